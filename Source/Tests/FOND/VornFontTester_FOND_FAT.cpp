#include "Tests/FOND/VornFontTester_FOND_FAT.h"

#include "TableAccess/ContainerClasses/FTResourceFontContainer.h"

namespace {

constexpr int64_t kEntriesAt = 54;
constexpr int64_t kEntrySize = 6;

}  // namespace

void VornFontTester_FOND_FAT::CheckFAT_FOND(const FTFont_FOND& iFamily) const {
  const bool tHasSfnt = iFamily.HasOutlines_sfnt();
  const bool tHasLWFN = iFamily.HasOutlines_LWFN();
  if (tHasSfnt && tHasLWFN) {
    ReportResult(Severity::kInformation,
                 "The FOND resource refers to both sfnt and LWFN outline data; this is probably not a good idea.");
  }
  if (!tHasSfnt && !tHasLWFN) {
    ReportResult(Severity::kFatalError, "The FOND resource refers to no outline data; it cannot be used on Corvane.");
  }
  const int64_t tCount = iFamily.GetFATEntryCount();
  const int64_t tLimit = (iFamily.Length() - kEntriesAt) / kEntrySize;
  if (tLimit < tCount) {
    ReportResult(Severity::kFatalError,
                 "The FOND resource has too many entries in its FAT; it has %d but should have no more than %d",
                 {tCount, tLimit});
  }
  CheckEntries(iFamily);
}

/// quirk: associations-beyond-end. Looks at as many entries as the table claims; those beyond the end of the resource
/// read as zeros.
void VornFontTester_FOND_FAT::CheckEntries(const FTFont_FOND& iFamily) const {
  const auto* tSuitcase = dynamic_cast<const FTResourceFontContainer*>(iFamily.GetContainer());
  if (!tSuitcase) return;
  const Tova::RecordArray tEntries = iFamily.GetFAT();
  iFamily.SpendWork(tEntries.Claimed());
  for (uint64_t i = 0; i < tEntries.Claimed(); ++i) {
    const bool tIsBitmap = tEntries[i].U16(0) != 0;
    const int16_t tID = tEntries[i].S16(4);
    if (tSuitcase->GetFont(tIsBitmap ? FTTag("NFNT") : FTTag("sfnt"), tID)) continue;
    const At tHere(*this, {.offset = kEntriesAt + kEntrySize * i});
    ReportResult(Severity::kMajorError,
                 "FAT entry %d in the FOND points to a nonexistent resource of type '%s' and ID %d",
                 {i, tIsBitmap ? "NFNT" : "sfnt", tID});
    if (CanBailOnFirstFailure()) return;
  }
}
