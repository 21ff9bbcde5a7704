#include "Report/Report.h"

namespace tool {
namespace {

std::string_view TextAt(TovaDictionaryRef dictionary, TovaStringRef key) {
  return Tova::Text(Tova::AsString(TovaDictionaryGetValue(dictionary, key)));
}

std::optional<int64_t> NumberAt(TovaDictionaryRef dictionary, TovaStringRef key) {
  TovaNumberRef number = Tova::AsNumber(TovaDictionaryGetValue(dictionary, key));
  return number ? std::optional<int64_t>(TovaNumberGetInteger(number)) : std::nullopt;
}

TovaArrayRef ArrayAt(TovaDictionaryRef dictionary, TovaStringRef key) {
  return Tova::AsArray(TovaDictionaryGetValue(dictionary, key));
}

/// The array under a key, each dictionary of it read.
template <class T>
std::vector<T> ReadAll(TovaDictionaryRef dictionary, TovaStringRef key, T (*read)(TovaDictionaryRef)) {
  TovaArrayRef array = ArrayAt(dictionary, key);
  std::vector<T> result;
  result.reserve(static_cast<size_t>(TovaArrayGetCount(array)));
  for (TovaIndex i = 0; i < TovaArrayGetCount(array); ++i) {
    result.push_back(read(Tova::AsDictionary(TovaArrayGetValueAtIndex(array, i))));
  }
  return result;
}

TestRecord ReadTest(TovaDictionaryRef test) {
  return {.identifier = TextAt(test, kVornFontTestIdentifierKey),
          .name = TextAt(test, kVornFontTestNameKey),
          .ran = TovaDictionaryGetValue(test, kVornFontTestTimeStampKey) != nullptr,
          .results = SeveritySet(ArrayAt(test, kVornFontTestResultKey)),
          .messages = MessageList(ArrayAt(test, kVornFontTestMessagesKey))};
}

std::string_view FontTypeInWords(std::string_view type) {
  const struct {
    TovaStringRef constant;
    std::string_view words;
  } types[] = {
      {kVornFontTestFONDResource, "FOND resource"},          {kVornFontTestNFNTResource, "NFNT resource"},
      {kVornFontTestTrueTypeFontData, "TrueType font data"}, {kVornFontTestPostScriptFontData, "PostScript font data"},
      {kVornFontTestSplicedFontData, "spliced font data"},   {kVornFontTestGeneralFontData, "general font data"}};
  for (const auto& known : types) {
    if (type == Tova::Text(known.constant)) return known.words;
  }
  return type;
}

FontRecord ReadFont(TovaDictionaryRef font) {
  return {.name = TextAt(font, kVornFontTestFontNameKey),
          .postScriptName = TextAt(font, kVornFontTestFontPostScriptNameKey),
          .type = FontTypeInWords(TextAt(font, kVornFontTestFontTypeKey)),
          .tests = ReadAll(font, kVornFontTestArrayKey, ReadTest)};
}

}  // namespace

Message MessageList::operator[](size_t index) const {
  TovaDictionaryRef message = Tova::AsDictionary(TovaArrayGetValueAtIndex(messages_, static_cast<TovaIndex>(index)));
  // Tests state the severity under the result key; the record of a font that could not be tested, under the other.
  TovaStringRef severity = Tova::AsString(TovaDictionaryGetValue(message, kVornFontTestResultKey));
  if (!severity) severity = Tova::AsString(TovaDictionaryGetValue(message, kVornFontTestSeverityKey));
  const std::string_view text = TextAt(message, kVornFontTestMessageTextKey);
  const std::string_view format = TextAt(message, kVornFontTestMessageFormatKey);
  return {.severity = SeverityOf(severity),
          .text = text,
          .format = format.empty() ? text : format,
          .table = TextAt(message, kVornFontTestMessageTableKey),
          .glyph = NumberAt(message, kVornFontTestMessageGlyphKey),
          .glyphName = TextAt(message, kVornFontTestMessageGlyphNameKey),
          .offset = NumberAt(message, kVornFontTestMessageOffsetKey),
          .part = TextAt(message, kVornFontTestMessagePartKey)};
}

FileReport ReadReport(const std::string& path, TovaDictionaryRef tree) {
  return {.path = path,
          .results = SeveritySet(ArrayAt(tree, kVornFontTestResultKey)),
          .fonts = ReadAll(tree, kVornFontTestFontsTestedKey, ReadFont),
          .tree = tree,
          .problem = {}};
}

Tova::Dictionary EmptyTree() {
  auto tree = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(tree.get(), kVornFontTestResultKey, Tova::Adopt(TovaArrayCreateMutable()).get());
  return tree;
}

SeverityCounts CountFindings(const TestRecord& test) {
  SeverityCounts counts;
  for (size_t i = 0; i < test.messages.size(); ++i) ++counts[test.messages[i].severity];
  for (Severity severity : kSeverities) {
    if (counts[severity] == 0 && test.results.Has(severity)) counts[severity] = 1;
  }
  return counts;
}

}  // namespace tool
