#include "Tests/InstructionStream.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "TableAccess/TableClasses/FTFontTable.h"
#include "Tests/VornFontTester.h"

namespace {

/// IFs that no EIF has closed yet, and all IFs and ELSEs seen.
struct IfCounts {
  uint16_t open = 0;
  uint16_t ifs = 0;
  uint16_t elses = 0;
};

struct OpCodeState {
  const VornFontTester* tester;
  bool isFontProgram;
  bool isGlyphProgram;
  uint64_t offset = 0;  // in the table, of the opcode looked at
  uint8_t opCode = 0;
  bool ok = true;
  bool inDefinition = false;
  uint16_t functionDefinitionCount = 0;
  uint16_t instructionDefinitionCount = 0;
  IfCounts topLevelIfs = {};    // of code outside definitions
  IfCounts definitionIfs = {};  // of the definition being walked

  IfCounts& CurrentIfs() { return inDefinition ? definitionIfs : topLevelIfs; }
  void Fail(Severity iSeverity, const char* iFormat, VornFontTester::Arguments iArguments = {}) {
    const At tHere(*tester, {.offset = offset});
    tester->ReportResultFromTable("Instructions", iSeverity, iFormat, iArguments);
    ok = false;
  }
};

/// quirk: dormant-program-rules. The font program consists of definitions; but no tester says that it walks one.
void AssureFDEFifFontProgram(OpCodeState& ioState) {
  if (ioState.isFontProgram && !ioState.inDefinition) {
    ioState.Fail(Severity::kMajorError, "Opcode %02X not allowed outside an FDEF/IDEF for font program",
                 {ioState.opCode});
  }
}

void DefaultOpCodeChecker(OpCodeState& ioState) { AssureFDEFifFontProgram(ioState); }

void PushOpCodeChecker(OpCodeState&) {}

void IllegalOpCodeChecker(OpCodeState& ioState) {
  ioState.Fail(Severity::kMajorError, "Illegal opcode: %02X", {ioState.opCode});
}

void IfOpCodeChecker(OpCodeState& ioState) {
  AssureFDEFifFontProgram(ioState);
  ++ioState.CurrentIfs().open;
  ++ioState.CurrentIfs().ifs;
}

void EndifOpCodeChecker(OpCodeState& ioState) {
  AssureFDEFifFontProgram(ioState);
  if (ioState.CurrentIfs().open == 0)
    ioState.Fail(Severity::kMinorError, "EIF appears without matching IF");
  else
    --ioState.CurrentIfs().open;
}

/// quirk: else-counts-ifs. ELSEs are held against all IFs before them, closed ones as well.
void ElseOpCodeChecker(OpCodeState& ioState) {
  AssureFDEFifFontProgram(ioState);
  IfCounts& tIfs = ioState.CurrentIfs();
  ++tIfs.elses;
  if (tIfs.elses > tIfs.ifs) ioState.Fail(Severity::kMajorError, "Extra ELSE instruction encountered");
}

void BeginDefinition(OpCodeState& ioState) {
  ioState.definitionIfs = {};
  ioState.inDefinition = true;
}

void FdefOpCodeChecker(OpCodeState& ioState) {
  if (ioState.isGlyphProgram) ioState.Fail(Severity::kMajorError, "FDEF not allowed in a glyph program");
  if (ioState.inDefinition) ioState.Fail(Severity::kMajorError, "Cannot have FDEF within an FDEF/IDEF");
  BeginDefinition(ioState);
  ++ioState.functionDefinitionCount;
}

void IdefOpCodeChecker(OpCodeState& ioState) {
  if (ioState.isGlyphProgram) ioState.Fail(Severity::kMajorError, "IDEF not allowed in a glyph program");
  if (ioState.inDefinition) ioState.Fail(Severity::kMajorError, "Cannot have IDEF within an FDEF/IDEF");
  BeginDefinition(ioState);
  ++ioState.instructionDefinitionCount;
}

void EndfOpCodeChecker(OpCodeState& ioState) {
  if (!ioState.inDefinition) {
    ioState.Fail(Severity::kMajorError, "ENDF appears without matching FDEF/IDEF");
  }
  if (ioState.CurrentIfs().open != 0) {
    ioState.Fail(Severity::kMajorError, "Unbalanced IF instruction found");
  }
  ioState.inDefinition = false;
}

struct OpCode {
  void (*check)(OpCodeState&) = nullptr;
  uint8_t operandBytes = 0;   // that follow the opcode, not counting
  uint8_t bytesPerCount = 0;  // those for each of the number that the first operand byte gives
};

constexpr std::array<OpCode, 256> kOpCodes = [] {
  std::array<OpCode, 256> tOpCodes;
  tOpCodes.fill({DefaultOpCodeChecker});
  tOpCodes[0x1B].check = ElseOpCodeChecker;    // ELSE
  tOpCodes[0x2C].check = FdefOpCodeChecker;    // FDEF
  tOpCodes[0x2D].check = EndfOpCodeChecker;    // ENDF
  tOpCodes[0x40] = {PushOpCodeChecker, 1, 1};  // NPUSHB
  tOpCodes[0x41] = {PushOpCodeChecker, 1, 2};  // NPUSHW
  tOpCodes[0x58].check = IfOpCodeChecker;      // IF
  tOpCodes[0x59].check = EndifOpCodeChecker;   // EIF
  tOpCodes[0x89].check = IdefOpCodeChecker;    // IDEF
  // quirk: illegal-opcodes. 0x7B, 0x83, 0x84, 0x90 and 0xAF; other opcodes that no instruction has, such as 0x91, pass.
  for (const uint8_t tIllegal : std::initializer_list<uint8_t>{0x7B, 0x83, 0x84, 0x90, 0xAF})
    tOpCodes[tIllegal].check = IllegalOpCodeChecker;
  for (uint8_t tPushed = 1; tPushed <= 8; ++tPushed) {
    tOpCodes[0xB0 + tPushed - 1u] = {PushOpCodeChecker, tPushed};                             // PUSHB[]
    tOpCodes[0xB8 + tPushed - 1u] = {PushOpCodeChecker, static_cast<uint8_t>(2u * tPushed)};  // PUSHW[]
  }
  return tOpCodes;
}();
static_assert(std::ranges::none_of(kOpCodes, [](const OpCode& iOpCode) { return iOpCode.check == nullptr; }));

}  // namespace

bool CheckTrueTypeInstructionStream(const VornFontTester* iTester, Tova::ByteView iBytes, uint64_t iLength,
                                    uint16_t* oFunctionDefinitions, uint16_t* oInstructionDefinitions,
                                    uint64_t iOffset) {
  if (iLength == 0) return true;
  iTester->GetFont()->SpendWork(iLength);
  OpCodeState tState = {.tester = iTester,
                        .isFontProgram = iTester->TestsTableWithTag(FTTag("fpgm")) != nullptr,
                        .isGlyphProgram = iTester->TestsTableWithTag(FTTag("glyf")) != nullptr};
  uint64_t tCurrent = 0;
  do {
    tState.opCode = iBytes.U8(tCurrent);
    tState.offset = iOffset + tCurrent;
    const OpCode& tOpCode = kOpCodes[tState.opCode];
    tOpCode.check(tState);
    ++tCurrent;
    if (tOpCode.operandBytes != 0)  // a branch: the next opcode need not wait for the lengths of this one
      tCurrent += tOpCode.operandBytes + uint64_t{tOpCode.bytesPerCount} * iBytes.U8(tCurrent);
  } while (tState.ok && tCurrent < iLength);

  if (tCurrent > iLength) {
    tState.Fail(Severity::kMajorError, "INSTRUCTION STREAM OVERRUN ENCOUNTERED!");
  }
  if (tState.CurrentIfs().open != 0) {
    tState.Fail(Severity::kMajorError, "Unbalanced IF instruction found");
  }
  if (tState.inDefinition) tState.Fail(Severity::kMajorError, "Unbalanced FDEF/IDEF");
  if (oFunctionDefinitions) *oFunctionDefinitions = tState.functionDefinitionCount;
  if (oInstructionDefinitions) *oInstructionDefinitions = tState.instructionDefinitionCount;
  return tState.ok;
}
