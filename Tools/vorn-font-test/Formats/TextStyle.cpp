#include "Formats/TextStyle.h"

#include <algorithm>

namespace tool {

std::string TextStyle::Of(Severity severity, std::string_view text) const {
  switch (severity) {
    case Severity::kFatal:
      return Colored("1;31", text);
    case Severity::kMajor:
      return Colored("31", text);
    case Severity::kMinor:
      return Colored("33", text);
    case Severity::kTechnical:
      return Colored("36", text);
    case Severity::kInformation:
      return Colored("34", text);
    case Severity::kNonFont:
      break;
  }
  return Colored("35", text);
}

std::string TextStyle::DimLines(std::string_view lines) const {
  std::string text;
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
    text += Dim(line) + "\n";
  }
  return text;
}

std::string TextStyle::List(SeveritySet severities, Severity mildest) const {
  std::string list;
  for (Severity severity : kGravestFirst) {
    if (severity < mildest || !severities.Has(severity)) continue;
    if (!list.empty()) list += ", ";
    list += Of(severity, Word(severity));
  }
  return list;
}

std::string TextStyle::Colored(std::string_view code, std::string_view text) const {
  if (!colored_) return std::string(text);
  return std::string("\x1b[").append(code).append("m").append(text).append("\x1b[0m");
}

std::string WhatDoesNotCount(const Totals& totals) {
  std::string list;
  for (const auto& [count, words] : {std::pair(totals.Count(Standing::kHistoric), " of older systems left out"),
                                     {totals.Count(Standing::kIgnored), " ignored"},
                                     {totals.Count(Standing::kKnown), " known"},
                                     {totals.fixed, " fixed"}}) {
    if (count > 0) list += ", " + Grouped(count) + words;
  }
  return list;
}

std::string Grouped(size_t count) {
  std::string digits = std::to_string(count);
  for (size_t at = digits.size(); at > 3;) digits.insert(at -= 3, 1, ',');
  return digits;
}

std::string Counted(size_t count, std::string_view noun) {
  return Grouped(count).append(" ").append(noun).append(count == 1 ? "" : "s");
}

}  // namespace tool
