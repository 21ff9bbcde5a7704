#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tests/VornFontTester.h"

/// Where the findings of a layout table's checks stand in a report, one number for each text: those of the table's own
/// checks before those of its lookups, and so on. Each checker counts on from one of these in an enum of its own.
enum LayoutRank : uint16_t {
  kRankTable = 0,
  kRankLookup = 100,
  kRankState = 200,
  kRankClass = 300,
  kRankBehaviour = 400,
  kRankMark = 500,
  kRankStack = 600,
  kRankAction = 700,
};

/// What a finding is about, beside the part of the table that is examined.
struct LayoutWhere {
  std::optional<uint64_t> offset = std::nullopt;  ///< bytes from the start of the table
  std::optional<uint32_t> glyph = std::nullopt;
};

/// An argument of a text that is kept until the text is reported: a number, or a text of its own.
class LayoutArgument {
 public:
  template <std::integral I>
  LayoutArgument(I iNumber) : _fNumber(static_cast<int64_t>(iNumber)) {}          // NOLINT(google-explicit-constructor)
  LayoutArgument(std::string_view iText) : _fText(Tova::MakeString(iText)) {}     // NOLINT(google-explicit-constructor)
  LayoutArgument(const char* iText) : LayoutArgument(std::string_view(iText)) {}  // NOLINT(google-explicit-constructor)
  LayoutArgument(const std::string& iText)                                        // NOLINT(google-explicit-constructor)
      : LayoutArgument(std::string_view(iText)) {}
  Tova::FormatArgument ForFormat() const {
    return _fText ? Tova::FormatArgument(_fText) : Tova::FormatArgument(_fNumber);
  }

 private:
  int64_t _fNumber = 0;
  Tova::String _fText;
};
using LayoutArguments = std::vector<LayoutArgument>;

/// Cases that are reported as one finding: their number, and what is to be said of the first.
struct LayoutTally {
  uint64_t count = 0;
  LayoutArguments first;
  LayoutWhere where;

  void Add(std::initializer_list<LayoutArgument> iCase, const LayoutWhere& iWhere = {}) { AddMany(1, iCase, iWhere); }
  /// Adds as many cases, of which iCase is the first.
  void AddMany(uint64_t iCount, std::initializer_list<LayoutArgument> iCase, const LayoutWhere& iWhere = {}) {
    if (iCount == 0) return;
    if (count == 0) {
      first = iCase;
      where = iWhere;
    }
    count += iCount;
  }
};

/// Gathers what the examination of one layout table finds in a part of it, reports it in order when the examination
/// leaves the part, and holds the work within a bound.
///
/// Of one text in one part only the first kFindingsOfText findings are reported; one more says how many were left out.
/// A text whose severity nobody asked for is not reported, unless it is fatal.
///
/// Honest tables whose parts do not overlap never come near the bound on work; hostile ones refer to the same bytes
/// over and over.
class LayoutReport {
 public:
  static constexpr size_t kFindingsOfText = 10;

  /// Thrown by Spend when the work is used up, which is reported by then; whoever made the report catches it.
  struct GivenUp {};

  LayoutReport(const VornFontTester& iTester, uint64_t iTableSize);
  LayoutReport(const LayoutReport&) = delete;
  LayoutReport& operator=(const LayoutReport&) = delete;

  const VornFontTester& Tester() const { return _fTester; }
  bool Wants(Severity iSeverity) const { return iSeverity == Severity::kFatalError || _fWanted.Has(iSeverity); }

  /// Leaves the part that was examined and enters another: "Chain %d, subtable %d" and its numbers. Throws FTException
  /// when the budget of the file ends.
  void Enter(const char* iPart, std::initializer_list<LayoutArgument> iArguments = {});
  /// Leaves the part that was examined, for the table itself.
  void Leave();

  void Report(uint16_t iRank, Severity iSeverity, const char* iFormat, std::initializer_list<LayoutArgument> iArguments,
              const LayoutWhere& iWhere = {});
  /// Reports the tally's number and first case, if there is one; iSubject stands before the number.
  void ReportCount(uint16_t iRank, Severity iSeverity, const char* iFormat, const LayoutTally& iTally,
                   const std::string* iSubject = nullptr);

  /// Takes note of many things about to be read, also in the budget of the file. Throws GivenUp when they are too many
  /// for the table, FTException when they are for the file.
  void Spend(uint64_t iSteps);

 private:
  struct Case {
    LayoutArguments arguments;
    LayoutWhere where;
  };
  /// What was found of one text.
  struct Cases {
    Severity severity = Severity::kInformation;
    const char* format = nullptr;
    uint64_t count = 0;
    std::vector<Case> kept;
  };
  void Add(uint16_t iRank, Severity iSeverity, const char* iFormat, const LayoutArguments& iArguments,
           const LayoutWhere& iWhere);
  const std::string& Part() const;
  void ReportNow(Severity iSeverity, const char* iFormat, const LayoutArguments& iArguments,
                 const LayoutWhere& iWhere) const;

  const VornFontTester& _fTester;
  SeveritySet _fWanted;
  const uint64_t _fStepsAllowed;
  uint64_t _fStepsLeft;
  const char* _fPartFormat = nullptr;  // the part that is examined, null for the table itself
  LayoutArguments _fPartArguments;
  mutable std::string _fPart;
  std::map<uint16_t, Cases> _fFound;
};
