#include "Tests/VornFontTesterInstructions_prep.h"

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/InstructionStream.h"

Tova::Array TestInstructions_prep(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions) {
  return RunTester<VornFontTesterInstructions_prep, FTFont_sfnt>(iFont, iMessages, iOptions);
}

bool VornFontTesterInstructions_prep::ExecuteTest() const {
  const auto* tFont = dynamic_cast<const FTFont_sfnt*>(GetFont());
  if (!tFont || !tFont->HasTaggedTable(FTFontTable_prep::kTag)) return false;
  CheckInstructions_prep(tFont->FindTable<FTFontTable_prep>());
  return true;
}

void VornFontTesterInstructions_prep::CheckInstructions_prep(const FTFontTable_prep* iTable) const {
  CheckTrueTypeInstructionStream(this, iTable->Bytes(), iTable->GetUnswappedDataLength(), nullptr, nullptr);
}
