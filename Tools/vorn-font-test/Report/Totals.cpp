#include "Report/Totals.h"

#include "Report/Report.h"

namespace tool {

Totals& Totals::operator+=(const Totals& other) {
  files += other.files;
  fonts += other.fonts;
  tests += other.tests;
  unreadable += other.unreadable;
  failed += other.failed;
  reached = reached || other.reached;
  findings += other.findings;
  return *this;
}

Totals TotalsOf(const FileReport& report) {
  Totals totals;
  if (report.problem.IsOfInput()) {
    totals.unreadable = 1;
    return totals;
  }
  totals.files = 1;
  totals.failed = report.problem ? 1 : 0;
  totals.fonts = report.fonts.size();
  for (const FontRecord& font : report.fonts) {
    for (const TestRecord& test : font.tests) {
      totals.tests += test.ran;
      totals.findings += CountFindings(test);
    }
  }
  if (!report.fonts.empty()) return totals;
  // Nothing but the severities is told of a file that is no font, and of any file where no more was asked for.
  for (Severity severity : kSeverities) totals.findings[severity] = report.results.Has(severity);
  return totals;
}

}  // namespace tool
