// Writes what the library knows of characters as C++ tables: a program of the build, which asks ICU. The library itself
// does without it: loading ICU takes longer than testing a small font.
//
// Usage: write-characters FOLDER
// FOLDER/CodePages.inc holds the code pages that texts are converted from and to, see Platform/CodePages.h;
// FOLDER/LettersAndDigits.inc the first and the last character of each run of letters with case and decimal digits.

#include <Tova/Tova.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/uset.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Platform/CodePages.h"

namespace {

using Tova::CodePage;

/// An encoding and ICU's name for it. For a platform-1 script it is the closest that ICU has.
constexpr struct {
  TovaTextEncoding encoding;
  const char* name;
} kEncodings[] = {
    {kTovaTextEncodingRoman, "windows-10000"},
    {1, "ibm-943_P15A-2003"},
    {2, "windows-950-2000"},
    {3, "ibm-970_P110_P110-2006_U2"},
    {4, "ibm-1089_P100-1995"},
    {5, "ibm-5012_P100-1999"},
    {6, "windows-10006"},
    {7, "windows-10007"},
    {21, "windows-874-2000"},
    {25, "ibm-1383_P110-1999"},
    {29, "windows-10029"},
    {kTovaTextEncodingDOSJapanese, "ibm-943_P15A-2003"},
    {kTovaTextEncodingDOSSimplifiedChinese, "windows-936-2000"},
    {kTovaTextEncodingDOSKorean, "windows-949-2000"},
    {kTovaTextEncodingDOSTraditionalChinese, "windows-950-2000"},
};

void Require(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error(what);
}

/// "0x41," for each number.
template <class Numbers>
std::string List(const Numbers& numbers) {
  std::string list;
  for (const auto number : numbers) {
    char text[sizeof "0x10FFFF,"];
    std::snprintf(text, sizeof text, "%#x,", static_cast<unsigned>(number));
    list += text;
  }
  return list;
}

/// One of ICU's converters, strict.
class Converter {
 public:
  explicit Converter(const std::string& name) : converter_(ucnv_open(name.c_str(), &error_), ucnv_close) {
    ucnv_setToUCallBack(converter_.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error_);
    ucnv_setFromUCallBack(converter_.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error_);
    Require(U_SUCCESS(error_), "ICU has no converter " + name);
  }

  /// The character of a code; CodePage::kNone where there is none.
  char16_t Decode(const std::string& code) {
    char16_t units[8];
    error_ = U_ZERO_ERROR;
    const int32_t length = ucnv_toUChars(converter_.get(), units, std::size(units), code.data(),
                                         static_cast<int32_t>(code.size()), &error_);
    if (U_FAILURE(error_)) return CodePage::kNone;
    Require(length == 1, "a code stands for several characters");
    return units[0];
  }
  /// Whether the last code was only the beginning of one.
  bool WasCut() const { return error_ == U_TRUNCATED_CHAR_FOUND; }

  /// The code of a character, as a number; none where there is none.
  std::optional<uint16_t> Encode(char16_t character) {
    char bytes[16];
    error_ = U_ZERO_ERROR;
    const int32_t length = ucnv_fromUChars(converter_.get(), bytes, std::size(bytes), &character, 1, &error_);
    if (U_FAILURE(error_) || length == 0) return std::nullopt;
    Require(length <= 2, "a code is longer than two bytes");
    const auto first = static_cast<uint8_t>(bytes[0]);
    return length == 1 ? first : static_cast<uint16_t>(first << 8 | static_cast<uint8_t>(bytes[1]));
  }

 private:
  UErrorCode error_ = U_ZERO_ERROR;
  std::unique_ptr<UConverter, void (*)(UConverter*)> converter_;
};

/// The rows of a code page.
std::vector<char16_t> CharactersOf(Converter& converter) {
  std::vector<char16_t> characters(CodePage::kRow, CodePage::kNone);
  for (size_t lead = 0; lead < CodePage::kRow; ++lead) {
    const std::string first(1, static_cast<char>(lead));
    characters[lead] = converter.Decode(first);
    if (!converter.WasCut()) continue;
    characters[lead] = static_cast<char16_t>(CodePage::kFirstLead + characters.size() / CodePage::kRow);
    for (size_t trail = 0; trail < CodePage::kRow; ++trail) {
      characters.push_back(converter.Decode(first + static_cast<char>(trail)));
      Require(!converter.WasCut(), "a code is longer than two bytes");
    }
  }
  return characters;
}

/// The characters and codes where the first code that stands for the character is not the one that ICU writes.
std::vector<uint16_t> PreferredOf(Converter& converter, const std::vector<char16_t>& characters) {
  const CodePage page = {0, characters, {}};
  std::vector<uint16_t> preferred;
  for (uint32_t character = 0; character < 0x10000; ++character) {
    const auto unit = static_cast<char16_t>(character);
    const auto code = converter.Encode(unit);
    if (code && code != page.CodeOf(unit)) preferred.insert(preferred.end(), {unit, *code});
  }
  return preferred;
}

std::string CodePages() {
  std::string tables;
  std::string rows = "constexpr CodePage kCodePages[] = {\n";
  for (const auto& [encoding, name] : kEncodings) {
    const auto* first = std::ranges::find(kEncodings, std::string(name), [](const auto& row) { return row.name; });
    const std::string number = std::to_string(first->encoding);
    if (first->encoding == encoding) {
      Converter converter(name);
      const std::vector<char16_t> characters = CharactersOf(converter);
      const std::vector<uint16_t> preferred = PreferredOf(converter, characters);
      tables += "constexpr char16_t kCharacters" + number + "[] = {" + List(characters) + "};\n";
      tables += "constexpr std::array<uint16_t, " + std::to_string(preferred.size()) + "> kPreferred" + number +
                " = {" + List(preferred) + "};\n";
    }
    rows += "{" + std::to_string(encoding) + ", kCharacters" + number + ", kPreferred" + number + "},\n";
  }
  return tables + rows + "};\n";
}

std::string LettersAndDigits() {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<USet, void (*)(USet*)> set(
      uset_openPattern(u"[[:Lu:][:Ll:][:Lt:][:Nd:]]", /*patternLength=*/-1, &error), uset_close);
  Require(U_SUCCESS(error), "ICU does not know letters and digits");
  std::string table = "constexpr CharacterRange kLettersAndDigits[] = {\n";
  for (int32_t i = 0; i < uset_getRangeCount(set.get()); ++i) {
    UChar32 range[2] = {};
    uset_getItem(set.get(), i, &range[0], &range[1], nullptr, 0, &error);
    table += "{" + List(range) + "},\n";
  }
  return table + "};\n";
}

void Write(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text << std::flush;
  Require(file.good(), "cannot write " + path);
}

}  // namespace

int main(int count, char** arguments) {
  try {
    Require(count == 2, "usage: write-characters FOLDER");
    const std::string folder = arguments[1];
    Write(folder + "/CodePages.inc", CodePages());
    Write(folder + "/LettersAndDigits.inc", LettersAndDigits());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", arguments[0], error.what());
    return 1;
  }
  return 0;
}
