#pragma once

#include "Formats/TreeSink.h"
#include "Options.h"
#include "Report/Report.h"

namespace tool {

/// What the tree of a report holds beside and instead of what the library put there.
struct TreeChoices {
  bool times = true;  ///< the moments at which tests ran
};

/// {"path": ..., "report": ...}, the library's tree with what the judge said of each message: "rule", "state" of the
/// rule, and "standing" where it does not count.
void WriteFileEntry(const FileReport& report, const TreeChoices& choices, TreeSink& sink);

}  // namespace tool
