#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/VornFontTester.h"
#include "support/FontBuilder.h"

namespace test {

/// A message of a test: the severity's last word ("FatalError") and the text as reported, prefix included.
struct Message {
  std::string severity;
  std::string text;
  /// Where the finding is: "glyf", "glyf glyph 3", "cmap offset 12", "morx offset 36 (Chain 0, subtable 2)". Compared
  /// only where a test states it.
  std::string place = {};
  bool operator==(const Message& other) const {
    return severity == other.severity && text == other.text &&
           (place.empty() || other.place.empty() || place == other.place);
  }
};
std::ostream& operator<<(std::ostream& out, const Message& message);

const std::string kInformation = "Information", kTechnical = "TechnicalError";
const std::string kMinor = "MinorError", kMajor = "MajorError", kFatal = "FatalError";

/// Makes messages of a severity, which all begin alike.
struct MessageMaker {
  std::string severity, prefix;
  Message operator()(const std::string& text) const { return {severity, prefix + text}; }
};
/// Those of the severities from information to fatal errors.
struct MessageMakers {
  MessageMaker information, technical, minor, major, fatal;
};
inline MessageMakers MessagesOf(const std::string& prefix) {
  return {{kInformation, prefix}, {kTechnical, prefix}, {kMinor, prefix}, {kMajor, prefix}, {kFatal, prefix}};
}

/// What a test run gave.
struct Findings {
  bool applies = false;                 ///< the entry function returned results
  std::vector<std::string> severities;  ///< the results, each by its last word
  std::vector<Message> messages;        ///< empty for a run without messages
};

struct RunOptions {
  bool messages = true;
  bool skipDuplicateFontTest = false;
  FindingSink::Limits limits = {};
  /// Severities enabled, by their last words; all of them by default.
  std::vector<std::string> severities = {"NonFontError", "Information", "TechnicalError",
                                         "MinorError",   "MajorError",  "FatalError"};
};

/// An sfnt font over bytes of its own.
class MemoryFont {
 public:
  explicit MemoryFont(Bytes bytes)
      : bytes_(std::move(bytes)), font_(nullptr, Tova::ByteView(bytes_.data(), bytes_.size())) {}
  const FTFont_sfnt& operator*() const { return font_; }
  const FTFont_sfnt* operator->() const { return &font_; }

 private:
  Bytes bytes_;
  FTFont_sfnt font_;
};

Findings Run(VornFontTestEntry entry, const FTFont& font, const RunOptions& options = {});
Findings Run(VornFontTestEntry entry, const FontBuilder& font, const RunOptions& options = {});

/// Expects exactly these messages, in this order; prints all findings when they differ.
void ExpectMessages(const Findings& findings, const std::vector<Message>& expected);
/// The same of a run over a font.
template <class Font>
void Expect(VornFontTestEntry entry, const Font& font, const std::vector<Message>& expected) {
  ExpectMessages(Run(entry, font), expected);
}
/// Expects the message among others.
void ExpectMessage(const Findings& findings, const Message& expected);

/// Expects an FTException with this detail text and returns its assertion text.
template <class Action>
std::string ExpectThrow(const std::string& detail, Action action) {
  try {
    action();
  } catch (const FTException& exception) {
    EXPECT_NE(std::string(exception.GetDetailedMessage()).find("(" + detail + ")"), std::string::npos)
        << exception.GetDetailedMessage();
    return exception.GetAssertion();
  }
  ADD_FAILURE() << "nothing thrown; expected: " << detail;
  return "";
}

}  // namespace test
