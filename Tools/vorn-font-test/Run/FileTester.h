#pragma once

#include <Tova/Tova.hpp>
#include <string>
#include <vector>

#include "Formats/ReportFormat.h"
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
  std::optional<Severity> failOn_;
  Tova::Dictionary libraryOptions_;
  std::vector<const ReportFormat*> formats_;
};

}  // namespace tool
