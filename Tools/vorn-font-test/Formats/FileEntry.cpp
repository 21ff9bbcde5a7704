#include "Formats/FileEntry.h"

#include <VornFontTest/VornFontTest.h>

#include <Tova/Tova.hpp>
#include <functional>

#include "Report/FontTables.h"
#include "Report/Rules.h"

namespace tool {
namespace {

class EntryWriter {
 public:
  EntryWriter(const FileReport& report, const TreeChoices& choices, TreeSink& sink)
      : report_(report), choices_(choices), sink_(sink) {}

  void Write() {
    sink_.BeginDictionary();
    sink_.Key("path");
    sink_.Text(report_.path);
    if (report_.problem) {
      WriteText("problem", report_.problem.text);
      WriteText("problemKind", Word(report_.problem.kind));
    }
    if (!report_.unopened.empty()) WriteText("unopened", report_.unopened);
    sink_.Key("report");
    WriteDictionary(report_.tree, kVornFontTestFontsTestedKey,
                    [&](TovaDictionaryRef font, size_t index) { WriteFont(font, report_.fonts[index]); });
    sink_.EndDictionary();
  }

 private:
  using WriteElement = std::function<void(TovaDictionaryRef element, size_t index)>;

  void WriteFont(TovaDictionaryRef tree, const FontRecord& font) {
    sink_.BeginDictionary();
    WriteEntries(tree, kVornFontTestArrayKey,
                 [&](TovaDictionaryRef test, size_t index) { WriteTest(test, font.tests[index]); });
    if (!font.tables.empty()) {
      sink_.Key("tablesNotTested");
      sink_.BeginArray();
      for (const std::string_view tag : TablesOf(font).notTested) sink_.Text(tag);
      sink_.EndArray();
    }
    sink_.EndDictionary();
  }

  void WriteTest(TovaDictionaryRef tree, const TestRecord& test) {
    WriteDictionary(tree, kVornFontTestMessagesKey, [&](TovaDictionaryRef message, size_t index) {
      WriteMessage(message, test.messages.JudgementAt(index));
    });
  }

  void WriteMessage(TovaDictionaryRef message, const Judgement& judgement) {
    sink_.BeginDictionary();
    WriteEntries(message, nullptr, {});
    if (judgement.rule) {
      WriteText("rule", judgement.rule->name);
      WriteText("state", Word(judgement.rule->state));
    }
    if (judgement.severity != judgement.given) WriteText("level", Word(judgement.severity));
    if (judgement.standing != Standing::kCounts) WriteText("standing", Word(judgement.standing));
    sink_.EndDictionary();
  }

  void WriteText(std::string_view key, std::string_view text) {
    sink_.Key(key);
    sink_.Text(text);
  }

  void WriteDictionary(TovaDictionaryRef dictionary, TovaStringRef arrayKey, const WriteElement& writeElement) {
    sink_.BeginDictionary();
    WriteEntries(dictionary, arrayKey, writeElement);
    sink_.EndDictionary();
  }

  /// The entries, but for the array under the key, whose dictionaries are written one by one.
  void WriteEntries(TovaDictionaryRef dictionary, TovaStringRef arrayKey, const WriteElement& writeElement) {
    for (TovaIndex i = 0; i < TovaDictionaryGetCount(dictionary); ++i) {
      const TovaStringRef key = TovaDictionaryGetKeyAtIndex(dictionary, i);
      const TovaTypeRef value = TovaDictionaryGetValueAtIndex(dictionary, i);
      if (!choices_.times && TovaEqual(key, kVornFontTestTimeStampKey)) continue;
      sink_.Key(Tova::Text(key));
      if (arrayKey && TovaEqual(key, arrayKey)) {
        WriteArray(Tova::AsArray(value), writeElement);
      } else {
        sink_.Value(value);
      }
    }
  }

  void WriteArray(TovaArrayRef array, const WriteElement& writeElement) {
    sink_.BeginArray();
    for (TovaIndex i = 0; i < TovaArrayGetCount(array); ++i) {
      writeElement(Tova::AsDictionary(TovaArrayGetValueAtIndex(array, i)), static_cast<size_t>(i));
    }
    sink_.EndArray();
  }

  const FileReport& report_;
  const TreeChoices& choices_;
  TreeSink& sink_;
};

}  // namespace

void WriteFileEntry(const FileReport& report, const TreeChoices& choices, TreeSink& sink) {
  EntryWriter(report, choices, sink).Write();
}

FileReport ReadFileEntry(TovaDictionaryRef entry) {
  const auto value = [entry](std::string_view key) {
    return TovaDictionaryGetValue(entry, Tova::MakeString(key).get());
  };
  const auto text = [&value](std::string_view key) { return std::string(Tova::Text(Tova::AsString(value(key)))); };
  FileReport report = ReadReport(text("path"), Tova::AsDictionary(value("report")));
  report.unopened = text("unopened");
  if (value("problem")) report.problem = {ProblemKindFromWord(text("problemKind")), text("problem")};
  return report;
}

}  // namespace tool
