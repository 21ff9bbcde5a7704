#include "JsonReport.h"

#include "JsonValue.h"

namespace tool {
namespace {

void WriteEntry(const std::string& path, TovaDictionaryRef report, Output& output) {
  WriteJson(FileEntry(path, report).get(), [&](std::string_view piece) { output.Write(piece); });
}

}  // namespace

void JsonReport::Begin() { output_.Write("{\"files\": ["); }

void JsonReport::AddFile(const std::string& path, TovaDictionaryRef report) {
  output_.Write(first_ ? "\n" : ",\n");
  WriteEntry(path, report, output_);
  first_ = false;
}

void JsonReport::End(size_t) { output_.Write(first_ ? "]}\n" : "\n]}\n"); }

void JsonLinesReport::AddFile(const std::string& path, TovaDictionaryRef report) {
  WriteEntry(path, report, output_);
  output_.Write("\n");
  output_.Flush();
}

}  // namespace tool
