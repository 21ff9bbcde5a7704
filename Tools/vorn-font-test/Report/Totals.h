#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "Report/Report.h"

namespace tool {

/// Findings by their standing.
using StandingCounts = std::array<size_t, kStandingCount>;

/// What a run has come to: sums over files, which may have been tested in any order and by any process.
struct Totals {
  size_t files = 0;
  size_t fonts = 0;
  size_t tests = 0;                   ///< that ran
  size_t unreadable = 0;              ///< paths that could not be read
  size_t failed = 0;                  ///< files in which something at or above the level that fails the run was found
  SeverityCounts findings;            ///< that count, as grave as they count
  StandingCounts standings{};         ///< findings that have messages
  std::vector<StandingCounts> rules;  ///< the same of each rule, in the order of AllRules; empty for none

  Totals& operator+=(const Totals& other);
  /// Whether the run fails by what was found.
  bool Reached() const { return failed > 0; }
  size_t Count(Standing standing) const { return standings[static_cast<size_t>(standing)]; }
  /// How many rules have findings of this standing.
  size_t CountRules(Standing standing) const;
};

/// What one font adds to that.
Totals TotalsOf(const FontRecord& font);
/// What one file adds.
Totals TotalsOf(const FileReport& report);

}  // namespace tool
