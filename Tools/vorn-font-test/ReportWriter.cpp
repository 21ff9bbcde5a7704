#include "ReportWriter.h"

#include "JsonReport.h"
#include "PropertyListReport.h"
#include "TextReport.h"

namespace tool {

std::unique_ptr<ReportWriter> MakeReportWriter(const Options& options, Output& output) {
  switch (options.format) {
    case Format::kJson:
      return std::make_unique<JsonReport>(output);
    case Format::kJsonLines:
      return std::make_unique<JsonLinesReport>(output);
    case Format::kPropertyList:
      return std::make_unique<PropertyListReport>(output);
    case Format::kText:
      break;
  }
  return std::make_unique<TextReport>(options, output);
}

Tova::Dictionary FileEntry(const std::string& path, TovaDictionaryRef report) {
  const auto text = Tova::Adopt(TovaStringCreateWithLossyUTF8(path.data(), path.size()));
  auto entry = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(entry.get(), Tova::MakeString("path").get(), text.get());
  TovaDictionarySetValue(entry.get(), Tova::MakeString("report").get(), report);
  return entry;
}

Tova::Dictionary SingleEntry(std::string_view key, TovaTypeRef value) {
  auto entry = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(entry.get(), Tova::MakeString(key).get(), value);
  return entry;
}

}  // namespace tool
