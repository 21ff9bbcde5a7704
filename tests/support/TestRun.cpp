#include "support/TestRun.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace test {

namespace {

constexpr const char* kSeverityWords[] = {"NonFontError", "Information", "TechnicalError",
                                          "MinorError",   "MajorError",  "FatalError"};

std::string Word(Severity severity) { return kSeverityWords[static_cast<size_t>(severity)]; }

TestOptions MakeOptions(const RunOptions& options) {
  TestOptions made;
  made.skipDuplicateFontTest = options.skipDuplicateFontTest;
  for (const Severity severity : kSeverities) {
    if (std::ranges::count(options.severities, Word(severity)) > 0) made.severities.Add(severity);
  }
  return made;
}

std::string PlaceOf(const Finding& finding) {
  std::string place;
  for (int shift = 24; finding.table != 0 && shift >= 0; shift -= 8) place += static_cast<char>(finding.table >> shift);
  if (finding.glyph) place += " glyph " + std::to_string(*finding.glyph);
  if (finding.offset) place += " offset " + std::to_string(*finding.offset);
  if (finding.part) place += " (" + *finding.part + ")";
  return place;
}

/// The text as a report would show it; none when the format and the arguments do not fit.
std::string TextOf(const FindingSink& sink, const Finding& finding) {
  const auto arguments = sink.ArgumentsOf(finding);
  const auto format = Tova::MakeString(finding.format);
  const auto text = Tova::Adopt(TovaStringCreateWithFormat(format.get(), arguments.data(), arguments.size()));
  if (!text) return "(no text)";
  return (finding.prefix ? std::string(finding.prefix) + ": " : "") + (finding.namesPart ? *finding.part + ": " : "") +
         std::string(Tova::Text(text));
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Message& message) {
  return out << message.severity << ": \"" << message.text << "\" at " << message.place;
}

Findings Run(VornFontTestEntry entry, const FTFont& font, const RunOptions& options) {
  FindingSink sink = options.messages ? FindingSink(options.limits) : FindingSink();
  const TestOptions testOptions = MakeOptions(options);
  Findings findings;
  findings.applies = entry(&font, sink, &testOptions);
  for (const Severity severity : sink.Severities().InOrder()) findings.severities.push_back(Word(severity));
  for (const Finding& finding : sink.Findings()) {
    findings.messages.push_back({Word(finding.severity), TextOf(sink, finding), PlaceOf(finding)});
  }
  return findings;
}

Findings Run(VornFontTestEntry entry, const FontBuilder& font, const RunOptions& options) {
  return Run(entry, *MemoryFont(font.Build()), options);
}

void ExpectMessages(const Findings& findings, const std::vector<Message>& expected) {
  EXPECT_THAT(findings.messages, testing::ElementsAreArray(expected));
}

void ExpectMessage(const Findings& findings, const Message& expected) {
  EXPECT_THAT(findings.messages, testing::Contains(expected));
}

}  // namespace test
