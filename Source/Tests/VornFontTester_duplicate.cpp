#include "Tests/VornFontTester_duplicate.h"

#include "Core/RundleConduit.h"
#include "TableAccess/ContainerClasses/FTDiskBasedFontContainer.h"
#include "TableAccess/FontClasses/FTFont_FOND.h"

bool VornFontTester_duplicate::ExecuteTest() const {
  if (!GetOptions().skipDuplicateFontTest) CheckForDuplicates();
  return true;
}

void VornFontTester_duplicate::CheckForDuplicates() const {
  if (GetFont()->GetType() == FTFont::kFOND) LookForDuplicateFamily();
  if (GetFont()->GetType() == FTFont::kSfnt) LookForDuplicateFont();
}

/// Each PostScript name of a family; the outline fonts of a suitcase are asked about themselves.
void VornFontTester_duplicate::LookForDuplicateFamily() const {
  const auto* tFamily = dynamic_cast<const FTFont_FOND*>(GetFont());
  if (!tFamily || tFamily->HasOutlines_sfnt()) return;
  for (uint64_t i = 0; i < tFamily->GetPostScriptNameCount(); ++i) {
    LookForDuplicatePostScriptName(tFamily->GetIndPostScriptName(i));
  }
}

void VornFontTester_duplicate::LookForDuplicateFont() const {
  const auto* tFont = dynamic_cast<const FTFont_sfnt*>(GetFont());
  const TovaStringRef tName = tFont ? tFont->GetPostScriptName() : nullptr;
  if (tName) LookForDuplicatePostScriptName(tName);
}

void VornFontTester_duplicate::LookForDuplicatePostScriptName(TovaStringRef iPostScriptName) const {
  const auto* tContainer = dynamic_cast<const FTDiskBasedFontContainer*>(GetFont()->GetContainer());
  if (!tContainer || TovaURLGetData(tContainer->GetFileURL())) return;  // in memory: no file to be told from
  // quirk: duplicate-unasked
  if (SendIsDuplicateFontMessage(tContainer->GetFileURL(), iPostScriptName, nullptr)) {
    ReportResult(Severity::kMajorError, "A font with the PostScript name %@ is already installed.", {iPostScriptName});
  }
}
