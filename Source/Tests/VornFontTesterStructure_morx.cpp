#include "Tests/VornFontTesterStructure_morx.h"

#include "Tests/ChainsExamination.h"

void VornFontTesterStructure_morx::Examine(const FTFontTable_morx& iTable, const LayoutTable& iBytes) const {
  using Rank = ChainsExamination::Rank;
  if (!HasSize(iBytes, FTLayoutChains::kTableHeaderSize, Rank::kSize)) return;
  LayoutReport& tReport = iBytes.report;
  const uint32_t tVersion = iTable.Version();
  if (tVersion != 2 && tVersion != 3) {
    tReport.Report(Rank::kVersion, Severity::kMajorError, "Bad version number: %d; it should be 2 or 3", {tVersion},
                   {0});
    if (tVersion == 0) return;
  }
  if (const uint16_t tReserved = iBytes.bytes.U16(2); tReserved != 0) {
    tReport.Report(Rank::kReserved, Severity::kTechnicalError, "The reserved field (0x%04X) is not zero", {tReserved},
                   {2});
  }
  ChainsExamination(iTable, iBytes, StateTableWidth::kExtended, tVersion == 3).Examine();
}
