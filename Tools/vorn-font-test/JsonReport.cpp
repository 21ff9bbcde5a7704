#include "JsonReport.h"

#include "JsonValue.h"

namespace tool {

void JsonReport::Begin() { output_.Write("{\"files\": ["); }

void JsonReport::AddFile(const std::string& path, TovaDictionaryRef report) {
  output_.Write(first_ ? "\n" : ",\n");
  output_.Write(ToJson(FileEntry(path, report).get()));
  first_ = false;
}

void JsonReport::End(size_t) { output_.Write(first_ ? "]}\n" : "\n]}\n"); }

void JsonLinesReport::AddFile(const std::string& path, TovaDictionaryRef report) {
  output_.Write(ToJson(FileEntry(path, report).get()) + "\n");
  output_.Flush();
}

}  // namespace tool
