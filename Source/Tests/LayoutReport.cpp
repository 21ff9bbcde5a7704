#include "Tests/LayoutReport.h"

#include <algorithm>
#include <utility>

#include "TableAccess/FTLimits.h"

LayoutReport::LayoutReport(const VornFontTester& iTester, uint64_t iTableSize)
    : _fTester(iTester),
      _fStepsAllowed(
          std::max(FTLimits::Get().layoutStepsAllowed, FTLimits::Get().layoutStepsAllowedPerByte * iTableSize)),
      _fStepsLeft(_fStepsAllowed) {
  for (const Severity tSeverity : kSeverities) {
    if (iTester.ExecuteTestsWithSeverity(tSeverity)) _fWanted.Add(tSeverity);
  }
}

void LayoutReport::Enter(const char* iPart, std::initializer_list<LayoutArgument> iArguments) {
  Leave();
  _fTester.GetFont()->SpendWork(kFTStepsOfPart);
  _fPartFormat = iPart;
  _fPartArguments = iArguments;
}

void LayoutReport::Leave() {
  for (const auto& [tRank, tCases] : std::exchange(_fFound, {})) {
    for (const Case& tCase : tCases.kept) ReportNow(tCases.severity, tCases.format, tCase.arguments, tCase.where);
    if (tCases.count > tCases.kept.size() && Wants(Severity::kInformation)) {
      ReportNow(Severity::kInformation, "%d more findings of this kind were left out",
                {tCases.count - tCases.kept.size()}, {});
    }
  }
  _fPart.clear();
  _fPartFormat = nullptr;
}

/// The part's text is made for the first finding in it: most parts have none.
const std::string& LayoutReport::Part() const {
  if (!_fPart.empty() || !_fPartFormat || _fTester.CanBailOnFirstFailure()) return _fPart;
  std::vector<Tova::FormatArgument> tArguments;
  for (const LayoutArgument& tArgument : _fPartArguments) tArguments.push_back(tArgument.ForFormat());
  const Tova::String tKey = Tova::MakeString(_fPartFormat);
  const Tova::String tTable = Tova::MakeString(_fTester.GetStringTableName());
  const auto tFormat =
      Tova::Adopt(TovaBundleCopyLocalizedString(TovaBundleGetMain(), tKey.get(), tKey.get(), tTable.get()));
  _fPart = Tova::Text(Tova::Adopt(TovaStringCreateWithFormat(tFormat.get(), tArguments.data(), tArguments.size())));
  return _fPart;
}

void LayoutReport::Report(uint16_t iRank, Severity iSeverity, const char* iFormat,
                          std::initializer_list<LayoutArgument> iArguments, const LayoutWhere& iWhere) {
  if (Wants(iSeverity)) Add(iRank, iSeverity, iFormat, iArguments, iWhere);
}

void LayoutReport::ReportCount(uint16_t iRank, Severity iSeverity, const char* iFormat, const LayoutTally& iTally,
                               const std::string* iSubject) {
  if (iTally.count == 0 || !Wants(iSeverity)) return;
  LayoutArguments tArguments;
  if (iSubject) tArguments.emplace_back(*iSubject);
  tArguments.emplace_back(iTally.count);
  tArguments.insert(tArguments.end(), iTally.first.begin(), iTally.first.end());
  Add(iRank, iSeverity, iFormat, tArguments, iTally.where);
}

void LayoutReport::Spend(uint64_t iSteps) {
  _fTester.GetFont()->GetWorkBudget().Charge(iSteps);
  if (iSteps <= _fStepsLeft) {
    _fStepsLeft -= iSteps;
    return;
  }
  _fFound.clear();
  ReportNow(Severity::kFatalError,
            "The examination was given up after %lu steps; parts of the table refer to the same bytes over and over",
            {_fStepsAllowed}, {});
  throw GivenUp();
}

void LayoutReport::Add(uint16_t iRank, Severity iSeverity, const char* iFormat, const LayoutArguments& iArguments,
                       const LayoutWhere& iWhere) {
  Cases& tCases = _fFound[iRank];
  tCases.severity = iSeverity;
  tCases.format = iFormat;
  if (++tCases.count <= kFindingsOfText) tCases.kept.push_back({iArguments, iWhere});
}

void LayoutReport::ReportNow(Severity iSeverity, const char* iFormat, const LayoutArguments& iArguments,
                             const LayoutWhere& iWhere) const {
  std::vector<Tova::FormatArgument> tArguments;
  for (const LayoutArgument& tArgument : iArguments) tArguments.push_back(tArgument.ForFormat());
  const At tHere(_fTester, {.glyph = iWhere.glyph, .offset = iWhere.offset, .part = Part()});
  _fTester.ReportAt(iSeverity, iFormat, tArguments);
}
