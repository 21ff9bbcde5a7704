#pragma once

#include <chrono>

#include "MessageFolding.h"
#include "ReportWriter.h"
#include "TextStyle.h"

namespace tool {

/// The report for people: a paragraph for each font in which something is to be shown, a line for each other one, and
/// a summary.
class TextReport : public ReportWriter {
 public:
  TextReport(const Options& options, Output& output);
  void AddFile(const std::string& path, TovaDictionaryRef report) override;
  void End(size_t unreadable) override;

 private:
  void AddFont(const std::string& path, const FontRecord& font);
  void AddSeverities(const std::string& heading, SeveritySet results);
  std::string TestParagraph(const TestRecord& test, SeverityCounts& counts);
  std::string MessageLines(const Message& message, size_t leftOut) const;
  std::string Remark(const SeverityCounts& counts) const;
  void Write(const std::string& line, const std::string& paragraph);
  std::string SeverityList(SeveritySet severities) const;
  void WriteFindings();

  Detail detail_;
  Severity show_;
  bool fold_;
  Output& output_;
  TextStyle style_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();

  size_t files_ = 0;
  size_t fonts_ = 0;
  size_t tests_ = 0;
  size_t folded_ = 0;
  SeverityCounts counts_;
  enum class Block { kNone, kLine, kParagraph } last_ = Block::kNone;  ///< what was written last
};

/// Whether text is to be colored: as asked, or when it goes to a terminal that takes colors.
bool WantsColor(ColorMode mode, const Output& output);

}  // namespace tool
