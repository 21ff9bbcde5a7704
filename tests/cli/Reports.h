#pragma once

#include <array>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Program.h"

namespace test {

/// The words of all formats.
inline constexpr std::array kAllFormats = {"text",  "json",   "jsonl",    "plist", "sarif",
                                           "junit", "github", "markdown", "html"};

inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The values of a report in JSON lines.
inline std::vector<nlohmann::json> JsonLines(const Outcome& outcome) {
  std::vector<nlohmann::json> values;
  for (const std::string& line : Lines(outcome.out)) values.push_back(nlohmann::json::parse(line));
  return values;
}

inline std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A report without what tells when it was made and how long that took.
inline std::string WithoutTimes(std::string report) {
  constexpr size_t kLength = std::string_view("2000-01-01T00:00:00Z").size();
  for (const std::string_view before : {"kVornFontTestTimeStampKey\":\"", "<date>"}) {
    for (size_t at = 0; (at = report.find(before, at)) != std::string::npos;) {
      report.erase(at += before.size(), kLength);
    }
  }
  const size_t tests = report.rfind(" run in ");
  return tests == std::string::npos ? report : report.erase(tests, report.find('\n', tests) - tests);
}

}  // namespace test
