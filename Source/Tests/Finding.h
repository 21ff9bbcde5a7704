#pragma once

#include <Tova/Tova.hpp>
#include <array>
#include <cstdint>
#include <deque>
#include <initializer_list>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// How grave a finding is, from the mildest to the gravest. kNonFontError is no fault of the font.
enum class Severity : uint8_t { kNonFontError, kInformation, kTechnicalError, kMinorError, kMajorError, kFatalError };

inline constexpr std::array kSeverities = {Severity::kNonFontError, Severity::kInformation, Severity::kTechnicalError,
                                           Severity::kMinorError,   Severity::kMajorError,  Severity::kFatalError};

/// Some severities, each once, in the order in which they were first added.
class SeveritySet {
 public:
  constexpr SeveritySet() = default;
  constexpr SeveritySet(std::initializer_list<Severity> iSeverities) {
    for (const Severity tSeverity : iSeverities) Add(tSeverity);
  }

  constexpr void Add(Severity iSeverity) {
    if (Has(iSeverity)) return;
    _fBits |= Bit(iSeverity);
    _fInOrder[_fCount++] = iSeverity;
  }
  constexpr bool Has(Severity iSeverity) const { return (_fBits & Bit(iSeverity)) != 0; }
  constexpr std::span<const Severity> InOrder() const { return std::span(_fInOrder).first(_fCount); }

 private:
  static constexpr uint8_t Bit(Severity iSeverity) {
    return static_cast<uint8_t>(1u << static_cast<unsigned>(iSeverity));
  }

  std::array<Severity, kSeverities.size()> _fInOrder{};
  uint8_t _fBits = 0;
  uint8_t _fCount = 0;
};

/// Where in a font a finding is; what is not known, or does not make sense, is left out.
struct Place {
  uint32_t table = 0;                             ///< the tag of a table; 0 for none
  std::optional<uint32_t> glyph = std::nullopt;   ///< a glyph index
  std::optional<uint64_t> offset = std::nullopt;  ///< bytes from the start of the table to the record that is meant
  std::string part = {};                          ///< for people: "Chain 0, subtable 2"; empty for none
};

/// One thing that a test found, as its sink keeps it.
struct Finding {
  const char* prefix;       ///< what its text begins with, "cmap" for "cmap: ..."; null for none
  const char* stringTable;  ///< where translations of the format stand; null for the format as it is
  const char* format;       ///< untranslated: it names the rule that was broken
  size_t firstArgument;     ///< see FindingSink::ArgumentsOf
  uint32_t argumentCount;
  uint32_t table;  ///< the members of Place
  std::optional<uint32_t> glyph;
  std::optional<uint64_t> offset;
  const std::string* part;
  Severity severity;
  bool namesPart;  ///< whether its text begins with the part, after the prefix
};

/// Takes the findings of one run of a test over one font: their severities always, and the findings themselves when
/// somebody wants their words, as many as its limits allow. Owned by whoever makes the report; a tester only adds.
class FindingSink {
 public:
  /// How much is kept. The bytes are what findings will take in a report.
  struct Limits {
    uint64_t findings = std::numeric_limits<uint64_t>::max();
    uint64_t bytes = std::numeric_limits<uint64_t>::max();
    /// Room that only major and fatal findings may use, out of bytes.
    uint64_t bytesForGrave = 0;
    /// Whether messages have their arguments as values beside the text.
    bool keepsArguments = false;
  };

  /// A sink for severities alone.
  FindingSink() = default;
  /// A sink that keeps findings.
  explicit FindingSink(const Limits& iLimits) : _fLimits(iLimits), _fWantsMessages(true) {}
  FindingSink(const FindingSink&) = delete;
  FindingSink& operator=(const FindingSink&) = delete;

  bool WantsMessages() const { return _fWantsMessages; }

  void AppendResult(Severity iSeverity) { _fSeverities.Add(iSeverity); }
  /// Keeps a finding, without recording its severity. Texts among the arguments are copied, values retained; prefix,
  /// string table and format must live as long as the program. iNamesPart: the part of the place, when there is one,
  /// stands in the text.
  void AppendMessage(Severity iSeverity, const char* iPrefix, const char* iStringTable, const char* iFormat,
                     std::span<const Tova::FormatArgument> iArguments, const Place& iPlace, bool iNamesPart = false);

  const SeveritySet& Severities() const { return _fSeverities; }
  /// In the order in which they were found.
  std::span<const Finding> Findings() const { return _fFindings; }
  std::span<const Tova::FormatArgument> ArgumentsOf(const Finding& iFinding) const {
    return std::span(_fArguments).subspan(iFinding.firstArgument, iFinding.argumentCount);
  }
  /// What the findings kept will take in a report.
  uint64_t BytesKept() const { return _fBytes; }
  /// How many findings the limits kept out.
  uint64_t LeftOut() const { return _fLeftOut; }

 private:
  bool HasRoomFor(Severity iSeverity, uint64_t iBytes) const;
  void KeepArgument(const Tova::FormatArgument& iArgument);
  const std::string* KeepPart(const std::string& iPart);

  Limits _fLimits;
  bool _fWantsMessages = false;
  uint64_t _fBytes = 0;
  uint64_t _fLeftOut = 0;
  SeveritySet _fSeverities;
  std::vector<Finding> _fFindings;
  std::vector<Tova::FormatArgument> _fArguments;
  std::vector<Tova::Value> _fValues;  // what arguments refer to
  std::deque<std::string> _fTexts;    // the same, for texts
  std::deque<std::string> _fParts;
};
