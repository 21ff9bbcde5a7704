#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
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
  size_t failed = 0;                  ///< files that could not be tested, by no fault of theirs
  size_t reached = 0;                 ///< files in which something at or above the level that fails the run was found
  SeverityCounts findings;            ///< that count, as grave as they count
  size_t fixed = 0;                   ///< findings of the baseline that are not there any more
  StandingCounts standings{};         ///< findings that have messages
  std::vector<StandingCounts> rules;  ///< the same of each rule, in the order of AllRules; empty for none
  std::vector<size_t> ignoresMet;     ///< findings that each ignore of the configuration is for

  Totals& operator+=(const Totals& other);
  size_t Count(Standing standing) const { return standings[static_cast<size_t>(standing)]; }
  /// How many rules have findings of this standing.
  size_t CountRules(Standing standing) const;
};

/// The totals as bytes for another process of this program, and back.
std::string ToBytes(const Totals& totals);
Totals TotalsFromBytes(std::string_view bytes);

/// What one font adds to that.
Totals TotalsOf(const FontRecord& font);
/// What one file adds.
Totals TotalsOf(const FileReport& report);

}  // namespace tool
