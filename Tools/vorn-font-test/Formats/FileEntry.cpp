#include "Formats/FileEntry.h"

namespace tool {

Tova::Dictionary FileEntry(const FileReport& report) {
  const auto path = Tova::Adopt(TovaStringCreateWithLossyUTF8(report.path.data(), report.path.size()));
  auto entry = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(entry.get(), Tova::MakeString("path").get(), path.get());
  if (report.problem) {
    const auto problem =
        Tova::Adopt(TovaStringCreateWithLossyUTF8(report.problem.text.data(), report.problem.text.size()));
    TovaDictionarySetValue(entry.get(), Tova::MakeString("problem").get(), problem.get());
    TovaDictionarySetValue(entry.get(), Tova::MakeString("problemKind").get(),
                           Tova::MakeString(Word(report.problem.kind)).get());
  }
  TovaDictionarySetValue(entry.get(), Tova::MakeString("report").get(), report.tree);
  return entry;
}

FileReport ReadFileEntry(TovaDictionaryRef entry) {
  const auto value = [entry](std::string_view key) {
    return TovaDictionaryGetValue(entry, Tova::MakeString(key).get());
  };
  const auto text = [&value](std::string_view key) { return std::string(Tova::Text(Tova::AsString(value(key)))); };
  FileReport report = ReadReport(text("path"), Tova::AsDictionary(value("report")));
  if (value("problem")) report.problem = {ProblemKindFromWord(text("problemKind")), text("problem")};
  return report;
}

Tova::Dictionary SingleEntry(std::string_view key, TovaTypeRef value) {
  auto entry = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(entry.get(), Tova::MakeString(key).get(), value);
  return entry;
}

}  // namespace tool
