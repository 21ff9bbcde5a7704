#include "Formats/TestList.h"

#include <Tova/Tova.hpp>

#include "Formats/JsonValue.h"
#include "Formats/PropertyListReport.h"
#include "Formats/TextReport.h"
#include "Report/EscapedText.h"

namespace tool {
namespace {

/// {"tests": [...]}.
Tova::Dictionary TestsEntry(TovaArrayRef tests) {
  auto entry = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(entry.get(), Tova::MakeString("tests").get(), tests);
  return entry;
}

TovaDictionaryRef TestAt(TovaArrayRef tests, TovaIndex index) {
  return Tova::AsDictionary(TovaArrayGetValueAtIndex(tests, index));
}

std::string_view TextAt(TovaDictionaryRef test, TovaStringRef key) {
  return Tova::Text(Tova::AsString(TovaDictionaryGetValue(test, key)));
}

/// The words that --type takes: out of "kVornFontTestUnexpectedValueTest", "unexpected-value".
std::string TypeWord(std::string_view constant) {
  constexpr std::string_view kPrefix = "kVornFontTest";
  constexpr std::string_view kSuffix = "Test";
  if (constant.starts_with(kPrefix)) constant.remove_prefix(kPrefix.size());
  if (constant.ends_with(kSuffix)) constant.remove_suffix(kSuffix.size());
  std::string word;
  for (char c : constant) {
    const bool capital = c >= 'A' && c <= 'Z';
    if (capital && !word.empty()) word += '-';
    word += capital ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return word;
}

std::string TypeWords(TovaDictionaryRef test) {
  TovaArrayRef types = Tova::AsArray(TovaDictionaryGetValue(test, kVornFontTestTypeKey));
  std::string words;
  for (TovaIndex i = 0; i < TovaArrayGetCount(types); ++i) {
    if (i > 0) words += ", ";
    words += TypeWord(Tova::Text(Tova::AsString(TovaArrayGetValueAtIndex(types, i))));
  }
  return words;
}

void WriteAsText(TovaArrayRef tests, const TextStyle& style, Output& output) {
  for (TovaIndex i = 0; i < TovaArrayGetCount(tests); ++i) {
    TovaDictionaryRef test = TestAt(tests, i);
    const std::string_view identifier = TextAt(test, kVornFontTestIdentifierKey);
    const std::string_view name = TextAt(test, kVornFontTestNameKey);
    const std::string_view description = TextAt(test, kVornFontTestDescriptionKey);
    if (i > 0) output.Write("\n");
    output.Write(style.Bold(EscapeForTerminal(identifier)));
    output.Write(style.Dim("  " + EscapeForTerminal(TypeWords(test))) + "\n");
    if (name != identifier) output.Write("  " + EscapeForTerminal(name) + "\n");
    if (description != identifier) output.Write("  " + EscapeForTerminal(description) + "\n");
  }
}

}  // namespace

void WriteTestList(TovaArrayRef tests, const Options& options, Output& output) {
  switch (options.format) {
    case Format::kJson:
      return output.Write(ToJson(TestsEntry(tests).get()) + "\n");
    case Format::kJsonLines:
      for (TovaIndex i = 0; i < TovaArrayGetCount(tests); ++i) output.Write(ToJson(TestAt(tests, i)) + "\n");
      return;
    case Format::kPropertyList:
      return WritePropertyList(TestsEntry(tests).get(), [&](std::string_view piece) { output.Write(piece); });
    default:  // no other format is asked for
      return WriteAsText(tests, TextStyle(WantsColor(options.color, output.IsTerminal())), output);
  }
}

}  // namespace tool
