#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Core/FontDetails.h"
#include "Tests/Finding.h"

class FTFont;

/// How much a report holds.
enum class ReportLevel { kResultsOnly, kSummary, kFull };

/// Turns what tests found into the dictionaries and arrays of a report, and keeps the report within a bound that grows
/// with the file, up to a point: what has no room is left out, and the report says so. The one place that knows what
/// messages and test records look like. One for a report.
class ReportTree {
 public:
  struct Options {
    ReportLevel level = ReportLevel::kResultsOnly;
    bool messageDetails = false;
    bool untranslated = false;  ///< texts are made from the formats as they are
    uint64_t messageLimit = 0;  ///< messages of a test over one font; 0: as many as there is room for
    uint64_t bytes = 0;         ///< room for the whole report; 0: as much as FTLimits grants
  };

  explicit ReportTree(const Options& iOptions);
  /// Makes room for a report about so many bytes; before anything is made.
  void SetFileSize(uint64_t iBytes);

  ReportLevel Level() const { return _fOptions.level; }
  bool HasFonts() const { return _fOptions.level != ReportLevel::kResultsOnly; }
  bool HasMessages() const { return _fOptions.level == ReportLevel::kFull; }

  /// Whether there is room for another font with its records, its messages aside.
  bool HasRoomForFont() const { return _fRoom > 0; }
  /// The font's dictionary, without its results; long names are cut when many fonts have them.
  Tova::MutableDictionary MakeFont(const FTFont& iFont);
  /// The sink for the next run of a test.
  FindingSink MakeSink() const;
  /// The record of a test that ran at iTime and applied: of its description, or of the result alone.
  Tova::Dictionary MakeRecord(const FTFont& iFont, TovaDictionaryRef iDescription, TovaAbsoluteTime iTime,
                              const FindingSink& iSink);

 private:
  Tova::Array MakeMessages(const FTFont& iFont, const FindingSink& iSink);
  Tova::Dictionary MakeMessage(const FTFont& iFont, const FindingSink& iSink, const Finding& iFinding);
  void AddDetails(TovaMutableDictionaryRef ioMessage, const FTFont& iFont, const Finding& iFinding);
  void AddArguments(TovaMutableDictionaryRef ioMessage, std::span<const Tova::FormatArgument> iArguments);
  Tova::Value ValueOf(const Tova::FormatArgument& iArgument);
  void SetNumber(TovaMutableDictionaryRef ioMessage, TovaStringRef iKey, uint64_t iNumber);
  Tova::Number KeptNumber(int64_t iNumber);
  void AddGlyphNames(TovaMutableDictionaryRef ioMessage, const FTFont& iFont, uint32_t iGlyph);
  Tova::String TextOf(const FindingSink& iSink, const Finding& iFinding);
  Tova::String FormatFor(const Finding& iFinding, bool iTranslated);
  Tova::String KeptString(std::string_view iText);
  void KeepName(TovaMutableDictionaryRef ioFont, TovaStringRef iKey);
  void Charge(uint64_t iBytes) { _fRoom = _fRoom > iBytes ? _fRoom - iBytes : 0; }

  struct FormatKey {
    const char* table;
    const char* prefix;
    const char* format;
    bool operator==(const FormatKey&) const = default;
  };
  struct FormatHash {
    size_t operator()(const FormatKey& iKey) const;
  };

  Options _fOptions;
  uint64_t _fBytesForGrave = 0;
  uint64_t _fRoom = 0;
  uint64_t _fRoomForLongNames;
  GlyphCharacters _fCharacters;
  std::vector<Tova::Number> _fNumbers;                                // by their values, as far as they were needed
  std::unordered_map<FormatKey, Tova::String, FormatHash> _fFormats;  // as looked up, prefix included
  std::unordered_map<std::string, Tova::String> _fStrings;            // names, formats, tags and parts, each once
};

/// The severities as an array of a report.
Tova::Array MakeSeverityArray(const SeveritySet& iSeverities);
/// The severity that a constant stands for in the options or a report; none for another value.
std::optional<Severity> SeverityOf(TovaTypeRef iConstant);

/// Adds a font's name, PostScript name, identifier and type to its dictionary, with texts in place of what it lacks or
/// what is corrupt. Throws no FTException.
void AddFontDataToDictionary(TovaMutableDictionaryRef ioDictionary, const FTFont& iFont);
