#pragma once

#include <VornFontTest/VornFontTest.h>

#include <Tova/Tova.hpp>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "TableAccess/FontClasses/FTFont.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// Base of every test: one run over one font. A subclass defines ExecuteTest, which judges the font through accessors
/// and reports what it finds; the base collects severities and messages and turns an FTException that escapes the test
/// into a fatal finding.
///
/// The font, the messages and the options belong to the caller and must outlive the tester (messages and options are
/// retained). Use: construct, CreateTestResults once, destroy; RunTester does it all.
class VornFontTester {
 public:
  using Arguments = std::initializer_list<Tova::FormatArgument>;

  /// messages is null unless the report is to have them. Throws FTException without a font or options.
  VornFontTester(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
  VornFontTester(const VornFontTester& iOther);
  VornFontTester& operator=(const VornFontTester&) = delete;
  virtual ~VornFontTester() = default;

  /// Runs the test. The severities found, each once, in order of first report; none when the test does not apply.
  virtual Tova::Array CreateTestResults();
  /// The accessor of a table with this tag when the running test examines one; null otherwise.
  virtual const FTFontTable* TestsTableWithTag(uint32_t iTag) const;
  /// Records the severity and, when messages are wanted, a message: the format in the user's language (looked up in the
  /// test's own string table), filled with the arguments and prefixed with the table's name.
  virtual void ReportResult(TovaStringRef iSeverity, const char* iFormat, Arguments iArguments = {}) const;
  /// The same with the format looked up in another string table; the prefix stays the test's own.
  virtual void ReportResultFromTable(const char* iTable, TovaStringRef iSeverity, const char* iFormat,
                                     Arguments iArguments = {}) const;
  virtual const FTFont* GetFont() const { return _fFont; }
  virtual TovaMutableArrayRef GetMessages() const { return _fMessages.get(); }
  virtual TovaDictionaryRef GetOptions() const { return _fOptions.get(); }
  virtual TovaMutableArrayRef GetResults() const { return _fResults.get(); }
  virtual TovaAllocatorRef GetAllocator() const { return TovaGetAllocator(_fOptions.get()); }
  /// Whether nobody wants messages, so that a test may stop at its first failure.
  virtual bool CanBailOnFirstFailure() const { return !_fMessages; }
  /// Whether the caller asked for findings of this severity; a test may skip the checks of others.
  virtual bool ExecuteTestsWithSeverity(TovaStringRef iSeverity) const;
  /// The test itself. False when it does not apply to the font.
  virtual bool ExecuteTest() const = 0;
  /// The string table of the test's messages and their prefix; null for no prefix.
  virtual const char* GetStringTableName() const { return "VornFTMessages"; }
  /// The index (0 to 31) of the highest bit set; all bits set for 0.
  virtual uint32_t FirstBit(uint32_t iMask) const;
  /// Judges the platform, script and language codes of a 'name' or 'cmap' record and reports what is wrong with them.
  /// iEntry is the record's index.
  virtual void ValidatePlatformScriptLanguages(uint32_t iEntry, uint32_t iPlatform, uint32_t iScript,
                                               uint32_t iLanguage) const;
  /// The first of the ascending offsets that is greater than the current one; 0 when there is none.
  virtual uint64_t NextOffset(const std::vector<uint64_t>& iSortedOffsets, uint64_t iCurrent) const;
  /// Sorts ascending.
  virtual void SortTableOffsets(std::vector<uint64_t>& ioOffsets) const;
  /// Inserts the offset into the ascending collection unless it is there.
  virtual void AddOffsetToCollection(std::vector<uint16_t>& ioCollection, uint16_t iOffset) const;

 protected:
  void AppendResult(TovaStringRef iSeverity) const;
  void AppendMessage(TovaStringRef iSeverity, TovaStringRef iText) const;
  void AppendResultAndMessage(TovaStringRef iSeverity, TovaStringRef iText) const;

 private:
  const FTFont* _fFont;
  Tova::MutableArray _fMessages;
  Tova::Dictionary _fOptions;
  Tova::MutableArray _fResults;  // exists while CreateTestResults runs
};

/// Puts the table under test into a tester's member for the time of a scope, and null there at its end, also when an
/// exception passes.
template <class T>
class TableUnderTest {
 public:
  TableUnderTest(const T*& ioMember, const T* iTable) : _fMember(ioMember) { _fMember = iTable; }
  TableUnderTest(const TableUnderTest&) = delete;
  TableUnderTest& operator=(const TableUnderTest&) = delete;
  ~TableUnderTest() { _fMember = nullptr; }

 private:
  const T*& _fMember;
};

/// What an entry function of a test looks like: the font, the array for messages (or null) and the options of the
/// report in; the severities out, none when the test does not apply to the font.
using VornFontTestEntry = Tova::Array (*)(const FTFont* iFont, TovaMutableArrayRef iMessages,
                                          TovaDictionaryRef iOptions);

/// The body of every entry function: runs a Tester over a font of the class Font, nothing over another.
template <class Tester, class Font>
Tova::Array RunTester(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions) {
  if (!dynamic_cast<const Font*>(iFont)) return {};
  Tester tTester(iFont, iMessages, iOptions);
  return tTester.CreateTestResults();
}
