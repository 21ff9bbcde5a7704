#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "Report/Problem.h"
#include "Report/Totals.h"
#include "Run/Spool.h"

namespace tool {

/// Takes what testing a file comes to, bit by bit; it ends with either End or Fail.
class OutcomeSink {
 public:
  virtual ~OutcomeSink() = default;

  /// Text of the file's part of a report; reports are numbered in the order of the formats.
  virtual void WritePart(size_t report, std::string_view text) = 0;
  /// A line for standard error.
  virtual void WriteLine(std::string_view line) = 0;
  virtual void End(const Totals& totals) = 0;
  /// The file could not be tested: what was written of its parts counts for nothing.
  virtual void Fail(const Problem& problem) = 0;
};

/// What testing a file came to.
struct FileOutcome : OutcomeSink {
  explicit FileOutcome(size_t reports) : parts(reports) {}

  void WritePart(size_t report, std::string_view text) override { parts.at(report).Write(text); }
  void WriteLine(std::string_view line) override {
    lines.Write(line);
    lines.Write("\n");
  }
  void End(const Totals& total) override { totals = total; }
  void Fail(const Problem& reason) override {
    problem = reason;
    for (Spool& part : parts) part.Clear();
  }
  /// How much memory it takes, in bytes.
  size_t MemorySize() const {
    size_t size = lines.MemorySize();
    for (const Spool& part : parts) size += part.MemorySize();
    return size;
  }

  std::vector<Spool> parts;  ///< of each report
  Spool lines;               ///< for standard error
  Totals totals;
  Problem problem;
};

}  // namespace tool
