#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Report/Report.h"

namespace tool {

/// The findings of an earlier report, each as a hash of what it is: font, test, rule, glyph, part and arguments. Takes
/// some bytes for each of them.
class Baseline {
 public:
  /// The findings of a file.
  struct Finding {
    uint64_t hash;
    uint32_t test;  ///< see Test
  };
  using Findings = std::vector<Finding>;

  /// Reads a report in JSON or JSON lines. Throws UsageError when it cannot.
  explicit Baseline(const std::string& file);

  /// Those of a file by its path, or the one most like it: of the same name, in folders of the same names as far as
  /// possible. Null when the earlier run did not test it.
  const Findings* FindingsOf(const std::string& path) const;
  /// The identifier of a test.
  std::string_view Test(uint32_t number) const { return tests_[number]; }

  /// What a message is, whatever its words and its place in the report.
  static uint64_t HashOf(const FontRecord& font, const TestRecord& test, size_t message);
  /// The same of the finding that no font of a file can be opened.
  static uint64_t HashOfUnopened();

 private:
  class Reader;

  std::map<std::string, Findings, std::less<>> files_;
  std::unordered_map<std::string, std::vector<std::string>> paths_;  ///< by the file's name
  std::vector<std::string> tests_;
};

}  // namespace tool
