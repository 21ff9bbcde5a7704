#include "Tests/VornFontTesterInstructions_fpgm.h"

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/InstructionStream.h"

Tova::Array TestInstructions_fpgm(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions) {
  return RunTester<VornFontTesterInstructions_fpgm, FTFont_sfnt>(iFont, iMessages, iOptions);
}

bool VornFontTesterInstructions_fpgm::ExecuteTest() const {
  const auto* tFont = dynamic_cast<const FTFont_sfnt*>(GetFont());
  if (!tFont || !tFont->HasTaggedTable(FTFontTable_fpgm::kTag)) return false;
  CheckInstructions_fpgm(tFont->FindTable<FTFontTable_fpgm>());
  return true;
}

void VornFontTesterInstructions_fpgm::CheckInstructions_fpgm(const FTFontTable_fpgm* iTable) const {
  CheckTrueTypeInstructionStream(this, iTable->Bytes(), iTable->GetUnswappedDataLength(), nullptr, nullptr);
}
