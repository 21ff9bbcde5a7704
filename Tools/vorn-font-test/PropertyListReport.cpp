#include "PropertyListReport.h"

namespace tool {

void PropertyListReport::AddFile(const std::string& path, TovaDictionaryRef report) {
  TovaArrayAppendValue(files_.get(), FileEntry(path, report).get());
}

void PropertyListReport::End(size_t) { WritePropertyList(SingleEntry("files", files_.get()).get(), output_); }

void WritePropertyList(TovaTypeRef value, Output& output) {
  const auto data = Tova::Adopt(TovaPropertyListCreateXMLData(value));
  if (!data) throw std::runtime_error("the report has no form as a property list");
  const uint8_t* bytes = TovaDataGetBytes(data.get());
  output.Write(std::string(bytes, bytes + TovaDataGetLength(data.get())));
}

}  // namespace tool
