// Writes the alphabets of the languages that fontconfig knows as C++ tables, for LanguageAlphabets.cpp. A program of
// the build: it asks the fontconfig library for its built-in orthographies and reads no configuration and no font.
//
// Usage: write-language-alphabets FILE
// kPages holds the pages of all alphabets, one alphabet after the other; kAlphabets the alphabets by the bytes of the
// tags, each with the place of its first page and their number.

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Alphabet {
  std::string tag;
  std::string pages;  ///< as initializers
  size_t pageCount = 0;
  uint32_t characterCount = 0;
};

/// "0x12," for each number.
std::string Numbers(const FcChar32* numbers, size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i) {
    char number[sizeof "0xFFFFFFFF,"];
    std::snprintf(number, sizeof number, "%#x,", numbers[i]);
    text += number;
  }
  return text;
}

Alphabet MakeAlphabet(const std::string& tag, const FcCharSet* characters) {
  Alphabet alphabet{tag, {}, 0, FcCharSetCount(characters)};
  FcChar32 map[FC_CHARSET_MAP_SIZE];
  FcChar32 next = 0;
  for (FcChar32 first = FcCharSetFirstPage(characters, map, &next); first != FC_CHARSET_DONE;
       first = FcCharSetNextPage(characters, map, &next)) {
    const FcChar32 number = first / (32 * FC_CHARSET_MAP_SIZE);
    alphabet.pages += "{" + Numbers(&number, 1) + "{" + Numbers(map, FC_CHARSET_MAP_SIZE) + "}},\n";
    ++alphabet.pageCount;
  }
  return alphabet;
}

std::vector<Alphabet> CollectAlphabets() {
  std::vector<Alphabet> alphabets;
  const std::unique_ptr<FcStrSet, void (*)(FcStrSet*)> tags(FcGetLangs(), FcStrSetDestroy);
  const std::unique_ptr<FcStrList, void (*)(FcStrList*)> list(FcStrListCreate(tags.get()), FcStrListDone);
  FcStrListFirst(list.get());
  while (const FcChar8* item = FcStrListNext(list.get())) {
    const std::string tag = reinterpret_cast<const char*>(item);
    const FcCharSet* characters = FcLangGetCharSet(item);
    if (characters && !tag.starts_with("und-")) alphabets.push_back(MakeAlphabet(tag, characters));
  }
  std::sort(alphabets.begin(), alphabets.end(), [](const auto& one, const auto& other) { return one.tag < other.tag; });
  return alphabets;
}

std::string TablesOf(const std::vector<Alphabet>& alphabets) {
  std::string pages = "constexpr LanguageAlphabet::Page kPages[] = {\n";
  std::string rows = "constexpr LanguageAlphabet kAlphabets[] = {\n";
  size_t first = 0;
  for (const Alphabet& alphabet : alphabets) {
    pages += alphabet.pages;
    rows += "{\"" + alphabet.tag + "\", {kPages + " + std::to_string(first) + ", " +
            std::to_string(alphabet.pageCount) + "}, " + std::to_string(alphabet.characterCount) + "},\n";
    first += alphabet.pageCount;
  }
  return pages + "};\n" + rows + "};\n";
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "Usage: %s FILE\n", arguments[0]);
    return 2;
  }
  const std::vector<Alphabet> alphabets = CollectAlphabets();
  const std::string text = TablesOf(alphabets);
  std::FILE* file = std::fopen(arguments[1], "wb");
  const bool written = file && !alphabets.empty() && std::fwrite(text.data(), 1, text.size(), file) == text.size();
  if ((file && std::fclose(file) != 0) || !written) {
    std::fprintf(stderr, "%s: cannot write %s\n", arguments[0], arguments[1]);
    return 1;
  }
  return 0;
}
