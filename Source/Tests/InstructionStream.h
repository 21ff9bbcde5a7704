#pragma once

#include <cstdint>

#include "Platform/ByteView.h"

class VornFontTester;

/// Walks a TrueType instruction stream (a glyph program, the font program or the control-value program) opcode by
/// opcode without executing it: all opcodes are known, pushes end inside the stream, IF, ELSE and EIF nest, FDEF, IDEF
/// and ENDF pair up and stand where they are allowed. What is wrong is reported through the tester, with texts of the
/// string table "Instructions"; the first fault ends the walk. See "The TrueType Instruction Set" in the OpenType
/// specification.
///
/// iBytes reach from the stream's first byte to the end of its table; iLength is the stream's own length in bytes,
/// which may be more. What a stream lacks reads as 0. Returns whether the stream passed. Findings stand at the opcode,
/// iOffset being where the stream begins in its table. The outputs receive the numbers of FDEFs and IDEFs seen; both
/// may be null, and an empty stream leaves them alone.
bool CheckTrueTypeInstructionStream(const VornFontTester* iTester, Tova::ByteView iBytes, uint64_t iLength,
                                    uint16_t* oFunctionDefinitions, uint16_t* oInstructionDefinitions,
                                    uint64_t iOffset = 0);
