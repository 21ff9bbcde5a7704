// Writes the alphabets of the languages that fontconfig knows, for the library's bundle. A program of the build: it
// asks the fontconfig library for its built-in orthographies and reads no configuration and no font.
//
// Usage: write-language-alphabets FILE
// A line for each language, by the bytes of the tags: the tag, then for each run of characters " 41-5A" or " E4".

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

/// Appends the characters of the set as runs.
void AppendRuns(std::string& line, const FcCharSet* characters) {
  constexpr uint32_t kNone = FC_CHARSET_DONE;
  uint32_t first = kNone;
  uint32_t last = kNone;
  const auto end_run = [&] {
    if (first == kNone) return;
    char text[2 * 8 + 3];
    std::snprintf(text, sizeof text, first == last ? " %X" : " %X-%X", first, last);
    line += text;
  };
  FcChar32 map[FC_CHARSET_MAP_SIZE];
  FcChar32 next = 0;
  for (FcChar32 page = FcCharSetFirstPage(characters, map, &next); page != FC_CHARSET_DONE;
       page = FcCharSetNextPage(characters, map, &next)) {
    for (uint32_t i = 0; i < 32 * FC_CHARSET_MAP_SIZE; ++i) {
      if ((map[i / 32] >> i % 32 & 1) == 0) continue;
      const uint32_t character = page + i;
      if (first == kNone || character != last + 1) {
        end_run();
        first = character;
      }
      last = character;
    }
  }
  end_run();
}

std::string CollectAlphabets() {
  std::vector<std::string> lines;
  const std::unique_ptr<FcStrSet, void (*)(FcStrSet*)> tags(FcGetLangs(), FcStrSetDestroy);
  const std::unique_ptr<FcStrList, void (*)(FcStrList*)> list(FcStrListCreate(tags.get()), FcStrListDone);
  FcStrListFirst(list.get());
  while (const FcChar8* tag = FcStrListNext(list.get())) {
    std::string line = reinterpret_cast<const char*>(tag);
    const FcCharSet* characters = FcLangGetCharSet(tag);
    if (!characters || line.starts_with("und-")) continue;
    AppendRuns(line, characters);
    lines.push_back(line + "\n");
  }
  std::sort(lines.begin(), lines.end());
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "Usage: %s FILE\n", arguments[0]);
    return 2;
  }
  const std::string text = CollectAlphabets();
  std::FILE* file = std::fopen(arguments[1], "wb");
  const bool written = file && !text.empty() && std::fwrite(text.data(), 1, text.size(), file) == text.size();
  if ((file && std::fclose(file) != 0) || !written) {
    std::fprintf(stderr, "%s: cannot write %s\n", arguments[0], arguments[1]);
    return 1;
  }
  return 0;
}
