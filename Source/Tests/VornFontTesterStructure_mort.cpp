#include "Tests/VornFontTesterStructure_mort.h"

#include "TableAccess/TableClasses/FTFontTable_morx.h"
#include "Tests/ChainsExamination.h"

void VornFontTesterStructure_mort::Examine(const FTFontTable_mort& iTable, const LayoutTable& iBytes) const {
  using Rank = ChainsExamination::Rank;
  if (SfntFont().HasTaggedTable(FTFontTable_morx::kTag)) {
    iBytes.report.Report(Rank::kBothTables, Severity::kInformation,
                         "The font also has a 'morx' table, which is used instead", {});
  }
  if (!HasSize(iBytes, FTLayoutChains::kTableHeaderSize, Rank::kSize)) return;
  if (iTable.Version() != 0x00010000) {
    ReportVersion(iBytes, iTable.Version(), Rank::kVersion);
    return;
  }
  ChainsExamination(iTable, iBytes, StateTableWidth::kClassic, false).Examine();
}
