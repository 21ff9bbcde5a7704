#pragma once

#include <cstddef>

#include "Report/Severity.h"

namespace tool {

struct FileReport;

/// What a run has come to: sums over files, which may have been tested in any order and by any process.
struct Totals {
  size_t files = 0;
  size_t fonts = 0;
  size_t tests = 0;       ///< that ran
  size_t unreadable = 0;  ///< paths that could not be read
  size_t failed = 0;      ///< files that could not be tested, by no fault of theirs
  bool reached = false;   ///< something at or above the level that fails the run was found
  SeverityCounts findings;

  Totals& operator+=(const Totals& other);
};

/// What one file adds.
Totals TotalsOf(const FileReport& report);

}  // namespace tool
