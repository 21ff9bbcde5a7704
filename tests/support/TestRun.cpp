#include "support/TestRun.h"

#include <VornFontTest/VornFontTest.h>
#include <gmock/gmock.h>

#include <string_view>

#include "support/Values.h"

namespace test {

namespace {

constexpr std::string_view kSeverityPrefix = "kVornFontTestSeverity";

std::string ShortSeverity(TovaTypeRef severity) {
  const std::string_view text = Tova::Text(Tova::AsString(severity));
  return std::string(text.starts_with(kSeverityPrefix) ? text.substr(kSeverityPrefix.size()) : text);
}

Tova::Dictionary MakeOptions(const RunOptions& options) {
  const auto severities = Array({});
  for (const std::string& severity : options.severities) {
    TovaArrayAppendValue(severities.get(), Tova::MakeString(std::string(kSeverityPrefix) + severity).get());
  }
  return Dictionary({{kVornFontTestSeverityKey, severities.get()}});
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Message& message) {
  return out << message.severity << ": \"" << message.text << '"';
}

Findings Run(VornFontTestEntry entry, const FTFont& font, const RunOptions& options) {
  const Tova::MutableArray messages = options.messages ? Tova::Adopt(TovaArrayCreateMutable()) : Tova::MutableArray();
  const Tova::Array results = entry(&font, messages.get(), MakeOptions(options).get());
  Findings findings;
  findings.applies = static_cast<bool>(results);
  for (TovaIndex i = 0; i < TovaArrayGetCount(results.get()); ++i) {
    findings.severities.push_back(ShortSeverity(TovaArrayGetValueAtIndex(results.get(), i)));
  }
  for (TovaIndex i = 0; i < TovaArrayGetCount(messages.get()); ++i) {
    const TovaDictionaryRef message = Tova::AsDictionary(TovaArrayGetValueAtIndex(messages.get(), i));
    const TovaTypeRef text = TovaDictionaryGetValue(message, kVornFontTestMessageTextKey);
    findings.messages.push_back({ShortSeverity(TovaDictionaryGetValue(message, kVornFontTestResultKey)),
                                 std::string(Tova::Text(Tova::AsString(text)))});
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
