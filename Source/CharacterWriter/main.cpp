// Writes what the library knows of characters by itself, without ICU, as C++ tables: a program of the build, which asks
// ICU.
//
// Usage: write-characters FOLDER
// FOLDER/RomanCharacters.inc gives the characters of the bytes 0x80 to 0xFF of the platform-1 Roman script;
// FOLDER/LettersAndDigits.inc the first and the last character of each run of letters with case and decimal digits.

#include <unicode/ucnv.h>
#include <unicode/uset.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

void Require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

std::string Hex(UChar32 character) {
  char text[sizeof "0x10FFFF,"];
  std::snprintf(text, sizeof text, "%#x,", static_cast<unsigned>(character));
  return text;
}

std::string RomanCharacters() {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, void (*)(UConverter*)> converter(ucnv_open("windows-10000", &error), ucnv_close);
  std::string table = "constexpr char16_t kRomanCharacters[] = {\n";
  for (int byte = 0; byte < 0x100; ++byte) {
    const char source = static_cast<char>(byte);
    UChar units[4];
    const int32_t length = ucnv_toUChars(converter.get(), units, std::size(units), &source, 1, &error);
    Require(U_SUCCESS(error) && length == 1, "ICU has no converter for Roman with a character for each byte");
    if (byte >= 0x80) table += Hex(units[0]);
    Require(byte >= 0x80 || units[0] == byte, "ICU's Roman does not begin with ASCII");
  }
  return table + "};\n";
}

std::string LettersAndDigits() {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<USet, void (*)(USet*)> set(
      uset_openPattern(u"[[:Lu:][:Ll:][:Lt:][:Nd:]]", /*patternLength=*/-1, &error), uset_close);
  Require(U_SUCCESS(error), "ICU does not know letters and digits");
  std::string table = "constexpr CharacterRange kLettersAndDigits[] = {\n";
  for (int32_t i = 0; i < uset_getRangeCount(set.get()); ++i) {
    UChar32 first = 0;
    UChar32 last = 0;
    uset_getItem(set.get(), i, &first, &last, nullptr, 0, &error);
    table += "{" + Hex(first) + Hex(last) + "},\n";
  }
  return table + "};\n";
}

void Write(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text << std::flush;
  Require(file.good(), "cannot write");
}

}  // namespace

int main(int count, char** arguments) {
  try {
    Require(count == 2, "usage: write-characters FOLDER");
    const std::string folder = arguments[1];
    Write(folder + "/RomanCharacters.inc", RomanCharacters());
    Write(folder + "/LettersAndDigits.inc", LettersAndDigits());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", arguments[0], error.what());
    return 1;
  }
  return 0;
}
