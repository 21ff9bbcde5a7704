#include "Tests/VornFontTesterInstructions_prep.h"

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/InstructionStream.h"

void VornFontTesterInstructions_prep::CheckTable(const FTFontTable_prep& iTable) const {
  CheckTrueTypeInstructionStream(this, iTable.Bytes(), iTable.GetUnswappedDataLength(), nullptr, nullptr);
}
