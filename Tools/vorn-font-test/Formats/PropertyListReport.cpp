#include "Formats/PropertyListReport.h"

#include <stdexcept>

#include "Formats/FileEntry.h"

namespace tool {
namespace {

/// The text of a list that the library made, null when it could not.
void Write(const Tova::Data& data, const TextSink& sink) {
  if (!data) throw std::runtime_error("the report has no form as a property list");
  // The bytes of UTF-8 text; char may look at any object.
  sink({reinterpret_cast<const char*>(TovaDataGetBytes(data.get())), TovaDataGetLength(data.get())});
}

/// How deep the dictionary of a file lies in the list: in the root's array.
constexpr int kFileDepth = 2;

}  // namespace

std::string PropertyListReport::Head(const Totals&) const {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
	<key>files</key>
	<array>
)";
}

void PropertyListReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  Write(Tova::Adopt(TovaPropertyListCreateXMLElement(FileEntry(report).get(), kFileDepth)), sink);
}

std::string PropertyListReport::End(const Totals&) const { return "\t</array>\n</dict>\n</plist>\n"; }

void WritePropertyList(TovaTypeRef value, const TextSink& sink) {
  Write(Tova::Adopt(TovaPropertyListCreateXMLData(value)), sink);
}

}  // namespace tool
