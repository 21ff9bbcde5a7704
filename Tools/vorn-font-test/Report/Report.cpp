#include "Report/Report.h"

#include <array>

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
  TestRecord record{.identifier = TextAt(test, kVornFontTestIdentifierKey),
                    .name = TextAt(test, kVornFontTestNameKey),
                    .target = TextAt(test, kVornFontTestTargetKey),
                    .ran = TovaDictionaryGetValue(test, kVornFontTestTimeStampKey) != nullptr,
                    .results = SeveritySet(ArrayAt(test, kVornFontTestResultKey)),
                    .unexplained = {},
                    .messages = MessageList(ArrayAt(test, kVornFontTestMessagesKey))};
  SeveritySet explained;
  for (size_t i = 0; i < record.messages.size(); ++i) explained.Add(record.messages.JudgementAt(i).given);
  record.unexplained = record.results.Without(explained);
  return record;
}

/// What a font is, by its kind of outlines, or by its type where it has none.
std::string_view FontTypeInWords(std::string_view outlines, std::string_view type) {
  const struct {
    TovaStringRef constant;
    std::string_view words;
  } kinds[] = {{kVornFontTestTrueTypeOutlines, "TrueType outlines"},
               {kVornFontTestPostScriptOutlines, "PostScript outlines"},
               {kVornFontTestType1Outlines, "Type 1"},
               {kVornFontTestBitmapsOnly, "bitmaps only"},
               {kVornFontTestFONDResource, "font family"},
               {kVornFontTestNFNTResource, "bitmaps only"},
               {kVornFontTestTrueTypeFontData, "no outlines"},
               {kVornFontTestPostScriptFontData, "PostScript font"},
               {kVornFontTestSplicedFontData, "spliced font"},
               {kVornFontTestGeneralFontData, "font of another kind"}};
  for (const std::string_view constant : {outlines, type}) {
    for (const auto& known : kinds) {
      if (constant == Tova::Text(known.constant)) return known.words;
    }
  }
  return type;
}

std::vector<std::string_view> TextsAt(TovaDictionaryRef dictionary, TovaStringRef key) {
  TovaArrayRef array = ArrayAt(dictionary, key);
  std::vector<std::string_view> texts;
  for (TovaIndex i = 0; i < TovaArrayGetCount(array); ++i) {
    texts.push_back(Tova::Text(Tova::AsString(TovaArrayGetValueAtIndex(array, i))));
  }
  return texts;
}

FontRecord ReadFont(TovaDictionaryRef font) {
  return {
      .name = TextAt(font, kVornFontTestFontNameKey),
      .postScriptName = TextAt(font, kVornFontTestFontPostScriptNameKey),
      .version = TextAt(font, kVornFontTestFontVersionKey),
      .type = FontTypeInWords(TextAt(font, kVornFontTestFontOutlineKindKey), TextAt(font, kVornFontTestFontTypeKey)),
      .glyphCount = NumberAt(font, kVornFontTestFontGlyphCountKey),
      .tables = TextsAt(font, kVornFontTestFontTablesKey),
      .tests = ReadAll(font, kVornFontTestArrayKey, ReadTest)};
}

}  // namespace

std::string_view Word(Standing standing) {
  static constexpr std::array<std::string_view, kStandingCount> kWords = {"counts", "historic", "ignored", "known"};
  return kWords[static_cast<size_t>(standing)];
}

TovaDictionaryRef MessageList::TreeAt(size_t index) const {
  return Tova::AsDictionary(TovaArrayGetValueAtIndex(messages_, static_cast<TovaIndex>(index)));
}

TovaStringRef MessageList::FormatAt(size_t index) const {
  TovaDictionaryRef message = TreeAt(index);
  TovaStringRef format = Tova::AsString(TovaDictionaryGetValue(message, kVornFontTestMessageFormatKey));
  return format ? format : Tova::AsString(TovaDictionaryGetValue(message, kVornFontTestMessageTextKey));
}

Judgement MessageList::JudgementAt(size_t index) const {
  if (index < judgements_.size()) return judgements_[index];
  // Tests state the severity under the result key; the record of a font that could not be tested, under the other.
  TovaDictionaryRef message = TreeAt(index);
  TovaStringRef constant = Tova::AsString(TovaDictionaryGetValue(message, kVornFontTestResultKey));
  if (!constant) constant = Tova::AsString(TovaDictionaryGetValue(message, kVornFontTestSeverityKey));
  const Severity severity = SeverityOf(constant);
  return {.severity = severity, .given = severity};
}

Message MessageList::operator[](size_t index) const {
  TovaDictionaryRef message = TreeAt(index);
  const Judgement judgement = JudgementAt(index);
  return {.severity = judgement.severity,
          .text = TextAt(message, kVornFontTestMessageTextKey),
          .format = Tova::Text(FormatAt(index)),
          .table = TextAt(message, kVornFontTestMessageTableKey),
          .glyph = NumberAt(message, kVornFontTestMessageGlyphKey),
          .glyphName = TextAt(message, kVornFontTestMessageGlyphNameKey),
          .character = NumberAt(message, kVornFontTestMessageCharacterKey),
          .offset = NumberAt(message, kVornFontTestMessageOffsetKey),
          .part = TextAt(message, kVornFontTestMessagePartKey),
          .arguments = ArrayAt(message, kVornFontTestMessageArgumentsKey),
          .rule = judgement.rule,
          .standing = judgement.standing,
          .isKnown = judgement.isKnown,
          .ignore = judgement.ignore};
}

FileReport ReadReport(const std::string& path, TovaDictionaryRef tree) {
  return {.path = path,
          .results = SeveritySet(ArrayAt(tree, kVornFontTestResultKey)),
          .listsFonts = ArrayAt(tree, kVornFontTestFontsTestedKey) != nullptr,
          .fonts = ReadAll(tree, kVornFontTestFontsTestedKey, ReadFont),
          .tree = tree};
}

Tova::Dictionary EmptyTree() {
  auto tree = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(tree.get(), kVornFontTestResultKey, Tova::Adopt(TovaArrayCreateMutable()).get());
  return tree;
}

SeverityCounts CountFindings(const TestRecord& test) {
  SeverityCounts counts;
  for (size_t i = 0; i < test.messages.size(); ++i) {
    const Judgement judgement = test.messages.JudgementAt(i);
    counts[judgement.severity] += judgement.standing == Standing::kCounts;
  }
  for (Severity severity : kSeverities) counts[severity] += test.unexplained.Has(severity);
  return counts;
}

}  // namespace tool
