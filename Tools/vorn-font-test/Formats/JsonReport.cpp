#include "Formats/JsonReport.h"

#include "Formats/FileEntry.h"
#include "Formats/JsonValue.h"

namespace tool {

std::string JsonReport::Head(const Totals&) const { return "{\"files\": [\n"; }

void JsonReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  JsonWriter writer(sink);
  WriteFileEntry(report, {}, writer);
}

std::string_view JsonReport::Between(bool, bool) const { return ",\n"; }

std::string JsonReport::End(const Totals& totals) const { return totals.files == 0 ? "]}\n" : "\n]}\n"; }

void JsonLinesReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  JsonWriter writer(sink);
  WriteFileEntry(report, {}, writer);
  sink("\n");
}

}  // namespace tool
