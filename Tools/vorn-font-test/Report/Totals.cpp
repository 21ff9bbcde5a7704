#include "Report/Totals.h"

#include <algorithm>
#include <functional>

#include "Report/Rules.h"

namespace tool {
namespace {

void Add(StandingCounts& counts, const StandingCounts& others) {
  std::ranges::transform(counts, others, counts.begin(), std::plus());
}

void AddMessages(Totals& totals, const MessageList& messages) {
  for (size_t i = 0; i < messages.size(); ++i) {
    const Judgement judgement = messages.JudgementAt(i);
    const auto standing = static_cast<size_t>(judgement.standing);
    ++totals.standings[standing];
    if (!judgement.rule) continue;
    totals.rules.resize(AllRules().size());
    ++totals.rules[static_cast<size_t>(judgement.rule - AllRules().data())][standing];
  }
}

}  // namespace

Totals& Totals::operator+=(const Totals& other) {
  files += other.files;
  fonts += other.fonts;
  tests += other.tests;
  unreadable += other.unreadable;
  failed += other.failed;
  findings += other.findings;
  Add(standings, other.standings);
  rules.resize(std::max(rules.size(), other.rules.size()));
  for (size_t i = 0; i < other.rules.size(); ++i) Add(rules[i], other.rules[i]);
  return *this;
}

size_t Totals::CountRules(Standing standing) const {
  return static_cast<size_t>(std::ranges::count_if(
      rules, [&](const StandingCounts& counts) { return counts[static_cast<size_t>(standing)] > 0; }));
}

Totals TotalsOf(const FontRecord& font) {
  Totals totals;
  totals.fonts = 1;
  for (const TestRecord& test : font.tests) {
    totals.tests += test.ran;
    totals.findings += CountFindings(test);
    AddMessages(totals, test.messages);
  }
  return totals;
}

Totals TotalsOf(const FileReport& report) {
  Totals totals;
  totals.files = 1;
  totals.failed = report.fails;
  for (const FontRecord& font : report.fonts) totals += TotalsOf(font);
  if (!report.fonts.empty()) return totals;
  // Nothing but the severities is told of a file that is no font, and of any file where no more was asked for.
  for (Severity severity : kSeverities) totals.findings[severity] = report.results.Has(severity);
  return totals;
}

}  // namespace tool
