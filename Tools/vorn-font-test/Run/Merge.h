#pragma once

#include "Options.h"

namespace tool {

/// Writes the reports that the options ask for from parts of reports in JSON lines, as if one run had made them, and
/// returns the exit status. A file that several parts report counts once: the first report of it that was made without
/// a problem, or else the first. Throws UsageError when a part cannot be read.
int MergeParts(const Options& options);

}  // namespace tool
