#include "Report/Severity.h"

#include <Tova/Tova.hpp>
#include <numeric>

namespace tool {

std::string_view Word(Severity severity) {
  static constexpr std::array<std::string_view, kSeverities.size()> kWords = {"non-font", "information", "technical",
                                                                              "minor",    "major",       "fatal"};
  return kWords[static_cast<size_t>(severity)];
}

TovaStringRef Constant(Severity severity) {
  switch (severity) {
    case Severity::kInformation:
      return kVornFontTestSeverityInformation;
    case Severity::kTechnical:
      return kVornFontTestSeverityTechnicalError;
    case Severity::kMinor:
      return kVornFontTestSeverityMinorError;
    case Severity::kMajor:
      return kVornFontTestSeverityMajorError;
    case Severity::kFatal:
      return kVornFontTestSeverityFatalError;
    case Severity::kNonFont:
      break;
  }
  return kVornFontTestSeverityNonFontError;
}

Severity SeverityOf(TovaStringRef constant) {
  for (Severity severity : kSeverities) {
    if (constant == Constant(severity)) return severity;
  }
  for (Severity severity : kSeverities) {
    if (Tova::Text(constant) == Tova::Text(Constant(severity))) return severity;
  }
  return Severity::kNonFont;
}

std::optional<Severity> SeverityFromWord(std::string_view word) {
  for (Severity severity : kSeverities) {
    if (Word(severity) == word) return severity;
  }
  return std::nullopt;
}

SeveritySet::SeveritySet(TovaArrayRef constants) {
  for (TovaIndex i = 0; i < TovaArrayGetCount(constants); ++i) {
    Add(SeverityOf(Tova::AsString(TovaArrayGetValueAtIndex(constants, i))));
  }
}

SeveritySet SeveritySet::operator|(SeveritySet other) const {
  other.bits_ |= bits_;
  return other;
}

SeveritySet SeveritySet::Without(SeveritySet other) const {
  other.bits_ = bits_ & ~other.bits_;
  return other;
}

size_t SeverityCounts::Total() const { return std::accumulate(counts_.begin(), counts_.end(), size_t{0}); }

size_t SeverityCounts::Below(Severity severity) const {
  return std::accumulate(counts_.begin(), counts_.begin() + static_cast<int>(severity), size_t{0});
}

SeverityCounts& SeverityCounts::operator+=(const SeverityCounts& other) {
  for (Severity severity : kSeverities) (*this)[severity] += other[severity];
  return *this;
}

}  // namespace tool
