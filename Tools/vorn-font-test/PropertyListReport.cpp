#include "PropertyListReport.h"

#include <stdexcept>

#include "Memory.h"

namespace tool {
namespace {

Tova::Data PropertyList(TovaTypeRef value) {
  auto data = Tova::Adopt(TovaPropertyListCreateXMLData(value));
  RequireMemory();
  if (!data) throw std::runtime_error("the report has no form as a property list");
  return data;
}

std::string_view TextOf(const Tova::Data& data) {
  // The bytes of UTF-8 text; char may look at any object.
  return {reinterpret_cast<const char*>(TovaDataGetBytes(data.get())), TovaDataGetLength(data.get())};
}

/// The whole list for a single file, or for none.
Tova::Data ListOf(TovaTypeRef entry) {
  const auto files = Tova::Adopt(TovaArrayCreateMutable());
  TovaArrayAppendValue(files.get(), entry);
  return PropertyList(SingleEntry("files", files.get()).get());
}

}  // namespace

void PropertyListReport::Begin() {
  constexpr std::string_view kBeforeFiles = "<array>\n";
  const Tova::Data none = ListOf(nullptr);
  const std::string_view text = TextOf(none);
  const size_t end = text.find(kBeforeFiles) + kBeforeFiles.size();
  head_ = text.substr(0, end);
  tail_ = text.substr(end);
  output_.Write(head_);
}

void PropertyListReport::AddFile(const std::string& path, TovaDictionaryRef report) {
  const Tova::Data list = ListOf(FileEntry(path, report).get());
  std::string_view text = TextOf(list);
  text.remove_prefix(head_.size());
  text.remove_suffix(tail_.size());
  output_.Write(text);
  output_.Flush();
}

void PropertyListReport::End(size_t) { output_.Write(tail_); }

void WritePropertyList(TovaTypeRef value, Output& output) { output.Write(TextOf(PropertyList(value))); }

}  // namespace tool
