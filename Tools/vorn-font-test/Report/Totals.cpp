#include "Report/Totals.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "Report/Rules.h"

namespace tool {
namespace {

void Add(StandingCounts& counts, const StandingCounts& others) {
  std::ranges::transform(counts, others, counts.begin(), std::plus());
}

/// Appends numbers to bytes, in this machine's form.
class NumberWriter {
 public:
  explicit NumberWriter(std::string& bytes) : bytes_(bytes) {}
  void operator()(size_t number) {
    std::array<char, sizeof(number)> raw;
    std::memcpy(raw.data(), &number, raw.size());
    bytes_.append(raw.data(), raw.size());
  }

 private:
  std::string& bytes_;
};

/// Takes them off again; 0 where there are no more.
class NumberReader {
 public:
  explicit NumberReader(std::string_view bytes) : bytes_(bytes) {}
  bool HasMore() const { return bytes_.size() >= sizeof(size_t); }
  void operator()(size_t& number) {
    number = 0;
    if (!HasMore()) return;
    std::memcpy(&number, bytes_.data(), sizeof(number));
    bytes_.remove_prefix(sizeof(number));
  }

 private:
  std::string_view bytes_;
};

/// All numbers but those of rules.
template <class AnyTotals, class Action>
void ForEachNumber(AnyTotals& totals, Action& action) {
  for (auto* number : {&totals.files, &totals.fonts, &totals.tests, &totals.unreadable, &totals.failed, &totals.reached,
                       &totals.fixed}) {
    action(*number);
  }
  for (const Severity severity : kSeverities) action(totals.findings[severity]);
  for (auto& count : totals.standings) action(count);
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
  reached += other.reached;
  findings += other.findings;
  fixed += other.fixed;
  Add(standings, other.standings);
  rules.resize(std::max(rules.size(), other.rules.size()));
  for (size_t i = 0; i < other.rules.size(); ++i) Add(rules[i], other.rules[i]);
  ignoresMet.resize(std::max(ignoresMet.size(), other.ignoresMet.size()));
  for (size_t i = 0; i < other.ignoresMet.size(); ++i) ignoresMet[i] += other.ignoresMet[i];
  return *this;
}

size_t Totals::CountRules(Standing standing) const {
  return static_cast<size_t>(std::ranges::count_if(
      rules, [&](const StandingCounts& counts) { return counts[static_cast<size_t>(standing)] > 0; }));
}

std::string ToBytes(const Totals& totals) {
  std::string bytes;
  NumberWriter writer(bytes);
  ForEachNumber(totals, writer);
  writer(totals.ignoresMet.size());
  for (const size_t count : totals.ignoresMet) writer(count);
  for (size_t rule = 0; rule < totals.rules.size(); ++rule) {
    if (totals.rules[rule] == StandingCounts{}) continue;
    writer(rule);
    for (const size_t count : totals.rules[rule]) writer(count);
  }
  return bytes;
}

Totals TotalsFromBytes(std::string_view bytes) {
  Totals totals;
  NumberReader reader(bytes);
  ForEachNumber(totals, reader);
  size_t ignores = 0;
  for (reader(ignores); ignores > 0 && reader.HasMore(); --ignores) reader(totals.ignoresMet.emplace_back());
  while (reader.HasMore()) {
    size_t rule = 0;
    reader(rule);
    if (rule >= AllRules().size()) break;
    totals.rules.resize(AllRules().size());
    for (size_t& count : totals.rules[rule]) reader(count);
  }
  return totals;
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
  if (report.problem.IsOfInput()) {
    totals.unreadable = 1;
    return totals;
  }
  totals.files = 1;
  totals.failed = report.problem ? 1 : 0;
  totals.reached = report.fails;
  totals.fixed = report.fixed;
  totals.ignoresMet = report.ignoresMet;
  for (const FontRecord& font : report.fonts) totals += TotalsOf(font);
  if (!report.fonts.empty()) return totals;
  // Nothing but the severities is told of a file that is no font, and of any file where no more was asked for.
  if (report.isKnown) {
    ++totals.standings[static_cast<size_t>(Standing::kKnown)];
    return totals;
  }
  for (Severity severity : kSeverities) totals.findings[severity] = report.results.Has(severity);
  return totals;
}

}  // namespace tool
