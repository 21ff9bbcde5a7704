#pragma once

#include <string>
#include <string_view>

#include "Report/Severity.h"
#include "Report/Totals.h"

namespace tool {

/// Colors of a terminal, or none.
class TextStyle {
 public:
  explicit TextStyle(bool colored) : colored_(colored) {}

  std::string Bold(std::string_view text) const { return Colored("1", text); }
  std::string Dim(std::string_view text) const { return Colored("2", text); }
  std::string Good(std::string_view text) const { return Colored("32", text); }
  std::string Bad(std::string_view text) const { return Colored("1;31", text); }
  /// The text in the color of a severity.
  std::string Of(Severity severity, std::string_view text) const;
  /// Whole lines, dim.
  std::string DimLines(std::string_view lines) const;
  /// The words of the severities from this one on, the gravest first.
  std::string List(SeveritySet severities, Severity mildest) const;

 private:
  /// The text between the ANSI escape sequences for this "select graphic rendition" code and for none.
  std::string Colored(std::string_view code, std::string_view text) const;

  bool colored_;
};

/// A count with its digits in groups of three: 65,000.
std::string Grouped(size_t count);
/// A grouped count and the noun in the right number: "1 font", "2 fonts".
std::string Counted(size_t count, std::string_view noun);

/// How many findings are left out, ignored, known and fixed, as the end of a list: ", 4 known, 1 fixed"; empty for
/// none.
std::string WhatDoesNotCount(const Totals& totals);

}  // namespace tool
