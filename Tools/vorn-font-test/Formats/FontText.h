#pragma once

#include <set>
#include <string>
#include <vector>

#include "Formats/FindingGroups.h"
#include "Formats/TextReport.h"

namespace tool {

/// The findings of one font in lines for people: a few for each rule that is shown, one for the rules of each milder
/// severity, and what was not looked at or left out.
class FontText {
 public:
  FontText(const FontRecord& font, const TextChoices& choices, const TextStyle& style);

  /// Whether any finding, or what was tested, is to be shown.
  bool IsShown() const;
  std::string Name() const;
  /// The name and the version of the font, and what it is: "TrueType outlines, 6,196 glyphs".
  std::vector<std::string> Heading(const std::string& path) const;
  /// The lines below the heading, or nothing.
  std::string Body() const;
  /// The rules whose findings are shown.
  void AddRulesShown(std::set<const Rule*>& rules) const;

 private:
  std::string Group(const FindingGroup& group) const;
  std::string GroupTitle(const FindingGroup& group) const;
  std::string Examples(const FindingGroup& group) const;
  std::string Advice(const Rule& rule) const;
  std::string MilderFindings(Severity severity) const;
  std::string TestResults() const;
  std::string Tables() const;
  std::string LeftOut() const;
  std::string Example(const FindingGroup::Place& place) const;

  const FontRecord& font_;
  const TextChoices& choices_;
  const TextStyle& style_;
  std::vector<FindingGroup> groups_;
};

/// Columns of the labels of lines about what was tested and left out, " Not tested  ".
inline constexpr size_t kLabelColumns = 13;

/// Lines about findings that do not count, and why they do not.
std::string LeftOutLines(const std::string& indent, const Totals& totals, size_t width);

/// The line about a severity: what it begins with, " x minor  ".
std::string SeverityMark(Severity severity, const TextStyle& style);
/// How many columns that takes.
inline constexpr size_t kMarkColumns = 10;

}  // namespace tool
