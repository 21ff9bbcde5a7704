#include "Tests/VornFontTesterInstructions_fpgm.h"

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/InstructionStream.h"

void VornFontTesterInstructions_fpgm::CheckTable(const FTFontTable_fpgm& iTable) const {
  CheckTrueTypeInstructionStream(this, iTable.Bytes(), iTable.GetUnswappedDataLength(), nullptr, nullptr);
}
