#pragma once

#include <Tova/Tova.hpp>
#include <string>
#include <vector>

#include "Formats/ReportFormat.h"
#include "Report/Judge.h"
#include "Report/Totals.h"
#include "Run/Spool.h"

namespace tool {

/// What testing a file came to.
struct FileOutcome {
  std::vector<Spool> parts;  ///< of each report of the run, in the order of the formats
  Totals totals;
};

/// Tests one file after the other and writes their parts of the reports. Keeps nothing from one file to the next.
class FileTester {
 public:
  /// The formats must outlive it.
  FileTester(const Options& options, const Tova::Array& tests, std::vector<const ReportFormat*> formats);

  FileOutcome Test(const std::string& path) const;

 private:
  Tova::Dictionary MakeTree(const std::string& path, const Tova::Dictionary& libraryOptions) const;
  /// Whether what was found fails the run. Tests whose findings leave that open run again, for all their messages.
  bool Fails(const FileReport& report) const;
  Tova::Dictionary OptionsForAllMessages(const std::vector<std::string_view>& tests) const;

  std::optional<Severity> failOn_;
  Judge judge_;
  Tova::Dictionary libraryOptions_;
  std::vector<const ReportFormat*> formats_;
};

}  // namespace tool
