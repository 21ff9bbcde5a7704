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

Tova::Dictionary SingleEntry(std::string_view key, TovaTypeRef value) {
  auto entry = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(entry.get(), Tova::MakeString(key).get(), value);
  return entry;
}

}  // namespace tool
