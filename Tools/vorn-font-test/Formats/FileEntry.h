#pragma once

#include "Formats/TreeSink.h"
#include "Options.h"
#include "Report/Report.h"

namespace tool {

/// What the tree of a report holds beside and instead of what the library put there.
struct TreeChoices {
  explicit TreeChoices(const Options& options);

  bool times;                     ///< the moments at which tests ran
  std::optional<Severity> limit;  ///< messages that do not count, or are milder, are left out; none: all are there
};

/// {"path": ..., "report": ...}: the library's tree with "tablesNotTested" of each font and what the judge said of each
/// message ("rule", "state" of the rule, and "standing" where it does not count). Between them stand "problem" and
/// "problemKind" for a file that was not tested, and "unopened" for one that no font could be opened of. Bytes of the
/// path that are not UTF-8 become U+FFFD.
void WriteFileEntry(const FileReport& report, const TreeChoices& choices, TreeSink& sink);
/// The report of such an entry, which must outlive it.
FileReport ReadFileEntry(TovaDictionaryRef entry);

}  // namespace tool
