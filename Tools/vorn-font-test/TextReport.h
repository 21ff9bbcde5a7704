#pragma once

#include <chrono>

#include "MessageFolding.h"
#include "Report.h"
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
  void WriteTest(const TestRecord& test, const SeverityCounts& counts);
  void WriteMessages(const MessageList& messages, Severity severity);
  void WriteMessage(const Message& message, size_t leftOut);
  std::string Remark(const SeverityCounts& counts) const;
  enum class Block { kNone, kLine, kParagraph };
  void BeginBlock(Block block, const std::string& line);
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
  Block last_ = Block::kNone;  ///< what was written last
};

/// Whether text is to be colored: as asked, or when it goes to a terminal that takes colors.
bool WantsColor(ColorMode mode, const Output& output);

}  // namespace tool
