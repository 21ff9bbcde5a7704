#pragma once

#include <VornFontTest/VornFontTest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tool {

/// How grave a finding is, from the mildest to the gravest.
enum class Severity : uint8_t { kNonFont, kInformation, kTechnical, kMinor, kMajor, kFatal };

inline constexpr std::array kSeverities = {Severity::kNonFont, Severity::kInformation, Severity::kTechnical,
                                           Severity::kMinor,   Severity::kMajor,       Severity::kFatal};

inline constexpr std::array kGravestFirst = {Severity::kFatal,     Severity::kMajor,       Severity::kMinor,
                                             Severity::kTechnical, Severity::kInformation, Severity::kNonFont};

/// The word for a severity in options and in text.
std::string_view Word(Severity severity);
/// The library's constant for a severity.
TovaStringRef Constant(Severity severity);
/// The severity of a constant; a constant that is not known counts as the mildest.
Severity SeverityOf(TovaStringRef constant);
/// The severity of a word.
std::optional<Severity> SeverityFromWord(std::string_view word);

/// Some severities, each once.
class SeveritySet {
 public:
  SeveritySet() = default;
  /// The severities of a report's result array; none for null.
  explicit SeveritySet(TovaArrayRef constants);

  void Add(Severity severity) { bits_ |= Bit(severity); }
  bool Has(Severity severity) const { return (bits_ & Bit(severity)) != 0; }
  bool Empty() const { return bits_ == 0; }
  /// Whether one of them is this grave or graver.
  bool Reaches(Severity severity) const { return bits_ >= Bit(severity); }
  SeveritySet operator|(SeveritySet other) const;
  SeveritySet Without(SeveritySet other) const;

 private:
  static unsigned Bit(Severity severity) { return 1u << static_cast<unsigned>(severity); }

  unsigned bits_ = 0;
};

/// How many findings there are of each severity.
class SeverityCounts {
 public:
  size_t& operator[](Severity severity) { return counts_[static_cast<size_t>(severity)]; }
  size_t operator[](Severity severity) const { return counts_[static_cast<size_t>(severity)]; }
  size_t Total() const;
  /// How many there are of severities milder than this one.
  size_t Below(Severity severity) const;
  SeverityCounts& operator+=(const SeverityCounts& other);

 private:
  std::array<size_t, kSeverities.size()> counts_{};
};

}  // namespace tool
