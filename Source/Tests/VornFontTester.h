#pragma once

#include <cstdint>
#include <exception>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/Finding.h"
#include "Tests/TestIdentity.h"

class FTException;
enum class StateMachineKind : uint8_t;
struct LayoutTable;
struct StateMachine;

/// What the caller of a report asks of every test.
struct TestOptions {
  SeveritySet severities;              ///< findings of these are looked for; a test may skip the checks of others
  bool skipDuplicateFontTest = false;  ///< installed fonts are not to be searched
};

/// Base of every test: one run over one font. A subclass defines ExecuteTest, which judges the font through accessors
/// and reports what it finds, and states its identity:
///
///   static constexpr TestIdentity kIdentity = {.identifier = "veltrin.TrueType.gasp.structure", ...};
///
/// A test of one sfnt table derives from TableTester instead, which finds the table. FontClass is the kind of font that
/// a test is for; a subclass for another kind names its own. Where more than the kind decides, the subclass has a
/// static bool AppliesTo(const FontClass&), whose exceptions end the whole report.
///
/// The font, the sink and the options belong to the caller and must outlive the tester. Use: RunTester.
class VornFontTester {
 public:
  using FontClass = FTFont_sfnt;
  using Arguments = std::initializer_list<Tova::FormatArgument>;

  /// Throws FTException without a font or options.
  VornFontTester(const FTFont* iFont, FindingSink& ioSink, const TestOptions* iOptions);
  VornFontTester(const VornFontTester&) = delete;
  VornFontTester& operator=(const VornFontTester&) = delete;
  virtual ~VornFontTester() = default;

  /// Runs the test. False when it does not apply to the font. An FTException that escapes the test becomes a fatal
  /// finding.
  bool CreateTestResults();
  /// The test itself. False when it does not apply to the font.
  virtual bool ExecuteTest() const = 0;

  /// Records the severity and, when messages are wanted, a message: the format in the user's language (looked up in the
  /// test's own string table), filled with the arguments, after the test's prefix.
  void ReportResult(Severity iSeverity, const char* iFormat, Arguments iArguments = {}) const;
  /// The same, but only when the caller asked for findings of this severity.
  void ReportResultIfAsked(Severity iSeverity, const char* iFormat, Arguments iArguments = {}) const {
    if (ExecuteTestsWithSeverity(iSeverity)) ReportResult(iSeverity, iFormat, iArguments);
  }
  /// The same as ReportResult with the format looked up in another string table; the prefix stays the test's own.
  void ReportResultFromTable(const char* iTable, Severity iSeverity, const char* iFormat,
                             Arguments iArguments = {}) const;
  /// As ReportResult, with the part of the font where the test is looking before the text, when there is one: "morx:
  /// Chain 0, subtable 2: State 5 is never referenced".
  void ReportAt(Severity iSeverity, const char* iFormat, std::span<const Tova::FormatArgument> iArguments) const;

  const FTFont* GetFont() const { return _fFont; }
  /// The font, for a test of sfnt fonts: RunTester starts it over no other.
  const FTFont_sfnt& SfntFont() const { return static_cast<const FTFont_sfnt&>(*_fFont); }
  const TestOptions& GetOptions() const { return *_fOptions; }
  /// Whether nobody wants messages, so that a test may stop at its first failure.
  bool CanBailOnFirstFailure() const { return !_fSink.WantsMessages(); }
  /// Whether the caller asked for findings of this severity.
  bool ExecuteTestsWithSeverity(Severity iSeverity) const { return _fOptions->severities.Has(iSeverity); }
  /// The accessor of a table with this tag when the running test examines one; null otherwise.
  virtual const FTFontTable* TestsTableWithTag(uint32_t) const { return nullptr; }
  /// The string table of the test's messages and their prefix; null for no prefix.
  virtual const char* GetStringTableName() const { return "VornFTMessages"; }

  /// The index (0 to 31) of the highest bit set; all bits set for 0.
  static uint32_t FirstBit(uint32_t iMask);
  /// Judges the platform, script and language codes of a 'name' or 'cmap' record and reports what is wrong with them.
  /// iEntry is the record's index.
  void ValidatePlatformScriptLanguages(uint32_t iEntry, uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage) const;

  // Lookup tables and state tables of the layout tables. Lookups are given by the bytes from their format word to the
  // end of the table; positions are bytes from there, -1 for none.

  /// The unit of a format 2 or 4 lookup that holds the glyph.
  static int64_t FindSegment(Tova::ByteView iLookup, uint32_t iGlyph);
  /// The unit of a format 6 lookup with the glyph.
  static int64_t FindSingle(Tova::ByteView iLookup, uint32_t iGlyph);
  /// The glyph's value in a lookup of any format.
  static int64_t DoGenericLookup(Tova::ByteView iLookup, uint32_t iGlyph);
  /// The bytes from the lookup's start to the end of its last unit, value or array; 0 for an unknown format.
  uint64_t CalculateLookupTableSize(Tova::ByteView iLookup) const;
  /// Checks a state table with 32-bit fields, as CheckStateTable does.
  static std::optional<StateMachine> TestSTXStateTable(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit,
                                                       StateMachineKind iKind);
  /// Checks a state table with 16-bit fields.
  static std::optional<StateMachine> TestStateTable(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit,
                                                    StateMachineKind iKind);

  /// The first of the ascending offsets that is greater than the current one; 0 when there is none.
  static uint64_t NextOffset(const std::vector<uint64_t>& iSortedOffsets, uint64_t iCurrent);
  /// Sorts ascending.
  static void SortTableOffsets(std::vector<uint64_t>& ioOffsets);
  /// Inserts the offset into the ascending collection unless it is there.
  static void AddOffsetToCollection(std::vector<uint16_t>& ioCollection, uint16_t iOffset);

 private:
  friend class At;
  void ReportException(const FTException& iException) const;
  /// Remembers where the test was looking when an exception leaves the innermost scope of a place.
  void NoteFailure() const;

  const FTFont* _fFont;
  FindingSink& _fSink;
  const TestOptions* _fOptions;
  bool _fRunning = false;
  int _fExceptions = 0;          // on their way when the test began
  mutable Place _fPlace;         // where the test is looking
  mutable Place _fFailurePlace;  // where it was when the last exception was thrown
  mutable bool _fFails = false;  // an exception passes through its scopes
};

/// Says where a test is looking for the time of a scope, for all findings that it makes there:
///
///   const At tHere(*this, {.glyph = tGlyph});
///
/// What the place leaves out stays as the scopes around it said.
class At {
 public:
  At(const VornFontTester& iTester, const Place& iPlace)
      : _fTester(iTester),
        _fTable(iTester._fPlace.table),
        _fGlyph(iTester._fPlace.glyph),
        _fOffset(iTester._fPlace.offset) {
    iTester._fFails = false;
    Place& tPlace = iTester._fPlace;
    if (iPlace.table != 0) tPlace.table = iPlace.table;
    if (iPlace.glyph) tPlace.glyph = iPlace.glyph;
    if (iPlace.offset) tPlace.offset = iPlace.offset;
    if (!iPlace.part.empty()) _fPart = std::exchange(tPlace.part, iPlace.part);
  }
  At(const At&) = delete;
  At& operator=(const At&) = delete;
  ~At() {
    if (std::uncaught_exceptions() > _fTester._fExceptions) {
      _fTester.NoteFailure();
    } else {
      _fTester._fFails = false;
    }
    Place& tPlace = _fTester._fPlace;
    tPlace.table = _fTable;
    tPlace.glyph = _fGlyph;
    tPlace.offset = _fOffset;
    if (_fPart) tPlace.part = std::move(*_fPart);
  }

 private:
  const VornFontTester& _fTester;
  // The place before; the part only where this scope names one.
  uint32_t _fTable;
  std::optional<uint32_t> _fGlyph;
  std::optional<uint64_t> _fOffset;
  std::optional<std::string> _fPart;
};

/// What an entry function of a test looks like. False when the test does not apply to the font.
using VornFontTestEntry = bool (*)(const FTFont* iFont, FindingSink& ioSink, const TestOptions* iOptions);

/// The entry function of every test: runs a Tester over a font of the class that it is for, nothing over another.
template <class Tester>
bool RunTester(const FTFont* iFont, FindingSink& ioSink, const TestOptions* iOptions) {
  using FontClass = typename Tester::FontClass;
  const auto* tFont = dynamic_cast<const FontClass*>(iFont);
  if (!tFont) return false;
  if constexpr (requires { Tester::AppliesTo(*tFont); }) {
    if (!Tester::AppliesTo(*tFont)) return false;
  }
  /// The tester under the name that its identity gives it.
  struct Named final : Tester {
    using Tester::Tester;
    const char* GetStringTableName() const override { return Tester::kIdentity.prefix; }
  };
  return Named(iFont, ioSink, iOptions).CreateTestResults();
}
