#include "PropertyListReport.h"

#include <stdexcept>

namespace tool {
namespace {

/// The text of a list that the library made, null when it could not.
void Write(const Tova::Data& data, Output& output) {
  if (!data) throw std::runtime_error("the report has no form as a property list");
  // The bytes of UTF-8 text; char may look at any object.
  output.Write({reinterpret_cast<const char*>(TovaDataGetBytes(data.get())), TovaDataGetLength(data.get())});
}

/// How deep the dictionary of a file lies in the list: in the root's array.
constexpr int kFileDepth = 2;

}  // namespace

void PropertyListReport::Begin() {
  output_.Write(R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
	<key>files</key>
	<array>
)");
}

void PropertyListReport::AddFile(const std::string& path, TovaDictionaryRef report) {
  Write(Tova::Adopt(TovaPropertyListCreateXMLElement(FileEntry(path, report).get(), kFileDepth)), output_);
  output_.Flush();
}

void PropertyListReport::End(size_t) { output_.Write("\t</array>\n</dict>\n</plist>\n"); }

void WritePropertyList(TovaTypeRef value, Output& output) {
  Write(Tova::Adopt(TovaPropertyListCreateXMLData(value)), output);
}

}  // namespace tool
