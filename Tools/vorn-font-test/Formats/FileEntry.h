#pragma once

#include <Tova/Tova.hpp>
#include <string>
#include <string_view>

#include "Report/Report.h"

namespace tool {

/// {"path": ..., "report": ...}, and between them "problem" and "problemKind" for a file that was not tested; bytes of
/// the path that are not UTF-8 become U+FFFD.
Tova::Dictionary FileEntry(const FileReport& report);
/// The report of such an entry, which must outlive it.
FileReport ReadFileEntry(TovaDictionaryRef entry);
/// A dictionary with one entry.
Tova::Dictionary SingleEntry(std::string_view key, TovaTypeRef value);

}  // namespace tool
