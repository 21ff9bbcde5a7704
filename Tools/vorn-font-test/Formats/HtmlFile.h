#pragma once

#include "Options.h"
#include "Report/EscapedText.h"
#include "Report/Report.h"

namespace tool {

/// Writes the part of a file: a plain list for browsers without JavaScript, and the data that html/report.js shows.
void WriteHtmlFile(const FileReport& report, Detail detail, const TextSink& sink);

}  // namespace tool
