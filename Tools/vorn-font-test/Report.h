#pragma once

#include <Tova/Tova.h>

#include <string_view>
#include <vector>

#include "Severity.h"

namespace tool {

struct Message {
  Severity severity;
  std::string_view text;
  std::string_view format = text;  ///< names the rule: findings of one rule differ in their numbers and names only
};

/// The messages of a test, read from the tree when asked for: there may be very many.
class MessageList {
 public:
  explicit MessageList(TovaArrayRef messages = nullptr) : messages_(messages) {}
  size_t size() const { return static_cast<size_t>(TovaArrayGetCount(messages_)); }
  Message operator[](size_t index) const;

 private:
  TovaArrayRef messages_;
};

/// What one test found in one font.
struct TestRecord {
  std::string_view identifier;
  std::string_view name;
  bool ran = false;  ///< false for the record that says why a font could not be tested
  SeveritySet results;
  MessageList messages;
};

struct FontRecord {
  std::string_view name;
  std::string_view postScriptName;
  std::string_view type;  ///< in words for people
  std::vector<TestRecord> tests;
};

/// A report of the library as plain values, which borrow the texts of its tree.
struct Report {
  SeveritySet results;
  std::vector<FontRecord> fonts;
};

Report ReadReport(TovaDictionaryRef tree);

}  // namespace tool
