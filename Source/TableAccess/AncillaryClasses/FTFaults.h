#pragma once

#include <cstdint>

/// A fault of a font whose whole message is published: programs compare it, the file and the line included, so that
/// none of its parts follows the source as it is now.
struct FTFault {
  const char* assertion;
  const char* detail;
  const char* file;
  uint32_t line;
};

/// The faults of outlines, their locations and their metrics.
namespace FTFaults {

// 'loca', 'hmtx' and 'vmtx'.
inline constexpr FTFault kHeadMissing = {"tTable_head == NULL", "The required 'head' table is missing",
                                         "TableAccess/TableClasses/FTFontTable_loca", 97};
inline constexpr FTFault kOffsetOfNoGlyph = {"iGlyphID < GetFont()->CountFontGlyphs()",
                                             "A reference was made to a non-existent glyph",
                                             "TableAccess/TableClasses/FTFontTable_loca", 137};
inline constexpr FTFault kLengthOfNoGlyph = {"iGlyphID < GetFont()->CountFontGlyphs()",
                                             "A reference was made to a non-existent glyph",
                                             "TableAccess/TableClasses/FTFontTable_loca", 146};
inline constexpr FTFault kMetricsOfNoGlyph = {"iGlyphID < GetFont()->CountFontGlyphs()",
                                              "A reference was made to a non-existent glyph",
                                              "TableAccess/TableClasses/FTFontTable_hmtx", 159};

// 'glyf' as a whole.
inline constexpr FTFault kLocaMissing = {"GetFont()->HasTaggedTable( FTFontTable_loca::kTag )",
                                         "The required 'loca' table is missing",
                                         "TableAccess/TableClasses/FTFontTable_glyf", 99};
inline constexpr FTFault kGlyphOutsideGlyf = {"tTable_loca->GetGlyphOffset( tIndex ) > GetUnswappedDataLength()",
                                              "The 'loca' table points to data outside the bounds of the 'glyf' table",
                                              "TableAccess/TableClasses/FTFontTable_glyf", 106};
/// quirk: unknown-kind-as-memory. A glyph of an unknown kind: of fewer contours than -1.
inline constexpr FTFault kGlyphOfUnknownKind = {"tGlyph == NULL", "An error occurred allocating memory",
                                                "TableAccess/TableClasses/FTFontTable_glyf", 109};

// A glyph.
/// quirk: failed-glyph-contains-itself. A glyph whose reading failed counts as being read from then on.
inline constexpr FTFault kGlyphContainsItself = {"ReadingData()", "A compound glyph contains itself as a component",
                                                 "TableAccess/AncillaryClasses/FTTrueTypeGlyph", 145};
inline constexpr FTFault kGlyphTooShort = {"GetUnswappedDataLength() < 5 * sizeof( uint16_t )",
                                           "A glyph contains bad data", "TableAccess/AncillaryClasses/FTTrueTypeGlyph",
                                           149};
inline constexpr FTFault kGlyphTooLong = {"( _fPointCount + _fInstructionByteCount > GetUnswappedDataLength() )",
                                          "A glyph has more data than will fit in the space allocated",
                                          "TableAccess/AncillaryClasses/FTSimpleTrueTypeGlyph", 120};
inline constexpr FTFault kFlagsCut = {"tReturnValue >= iDataLimit",
                                      "Glyph data exceeded data limit when unzipping flags",
                                      "TableAccess/AncillaryClasses/FTSimpleTrueTypeGlyph", 286};
inline constexpr FTFault kTooManyFlags = {"tFlags >= tFlagsEnd",
                                          "Flag data exceeded flag data limit when unzipping flags",
                                          "TableAccess/AncillaryClasses/FTSimpleTrueTypeGlyph", 292};
inline constexpr FTFault kComponentIsNoGlyph = {"tOther == NULL",
                                                "An attempt was made to access a glyph with an invalid index",
                                                "TableAccess/AncillaryClasses/FTCompoundTrueTypeGlyph", 160};

}  // namespace FTFaults
