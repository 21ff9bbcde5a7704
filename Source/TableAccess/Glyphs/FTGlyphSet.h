#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/ByteView.h"
#include "TableAccess/Glyphs/FTComponentRun.h"
#include "TableAccess/Glyphs/FTGlyphLocations.h"
#include "TableAccess/Glyphs/FTGlyphRecord.h"
#include "TableAccess/Glyphs/FTOutline.h"

class FTWorkBudget;

/// The glyphs that a 'glyf' and a 'loca' table give together: a record of each, decoded at the first question, and room
/// for the points and for the components of the glyph that was asked last.
///
/// Bytes of a glyph: numberOfContours i16 (above 0 a simple glyph, 0 an empty one, -1 a compound one), the box as xMin,
/// yMin, xMax, yMax (i16 each, font units), then the body of the kind. See "glyf — Glyph Data" in the OpenType
/// specification.
///
/// While a glyph is decoded it is marked as being read, which is how a compound glyph that contains itself is found;
/// decoding that throws leaves the marks, so that every later question to the glyph throws as well. The bytes are
/// borrowed, and so is the budget.
class FTGlyphSet {
 public:
  /// Finds out the kinds of all glyphs. Throws "The 'loca' table points to data outside the bounds of the 'glyf' table"
  /// and, for a number of contours that the format does not know, "An error occurred allocating memory".
  FTGlyphSet(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations, FTWorkBudget& ioBudget);

  uint16_t Count() const { return _fLocations.glyphCount; }
  /// From the glyph's record to the end of the table.
  Tova::ByteView BytesOf(uint16_t iGlyph) const { return _fBytes.From(_fLocations.Offset(iGlyph)); }
  uint64_t LengthOf(uint16_t iGlyph) const { return _fLocations.Length(iGlyph); }
  /// What is known of the glyph by now: its kind and its state, the rest once it has been read.
  const FTGlyphRecord& Peek(uint16_t iGlyph) const { return _fRecords[iGlyph]; }
  /// The record of the glyph decoded. How deep compound glyphs are nested is no matter: the path lies on a stack of its
  /// own.
  const FTGlyphRecord& Read(uint16_t iGlyph) {
    const FTGlyphRecord& tRecord = _fRecords[iGlyph];
    return tRecord.state == FTGlyphRecord::State::kRead ? tRecord : ReadUnread(iGlyph);
  }
  /// The contours of a simple glyph and the components of a compound one, valid until another is asked for.
  const FTOutline& OutlineOf(uint16_t iGlyph);
  const std::vector<FTComponent>& ComponentsOf(uint16_t iGlyph);

  /// Whether the set was made from these very bytes, wherever their equals may lie.
  bool IsOf(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations) const;
  /// Forgets which glyphs could not be decoded: they will be tried again.
  void ForgetFailures();

 private:
  struct Level;
  static constexpr uint32_t kNone = 0xFFFFFFFF;

  const FTGlyphRecord& ReadUnread(uint16_t iGlyph);
  FTGlyphRecord& BeginReading(uint16_t iGlyph);
  void ReadSimple(uint16_t iGlyph, FTGlyphRecord& ioRecord);
  void ReadCompound(uint16_t iGlyph);
  bool AddComponent(uint16_t iGlyph, FTGlyphRecord& ioTotals);
  void UnpackOutline(uint16_t iGlyph, FTGlyphRecord& ioRecord);

  Tova::ByteView _fBytes;
  FTGlyphLocations _fLocations;
  FTWorkBudget* _fBudget;
  std::vector<FTGlyphRecord> _fRecords;
  bool _fHasFailures = false;
  FTOutline _fOutline;
  uint32_t _fOutlineOf = kNone;
  std::vector<FTComponent> _fComponents;
  uint32_t _fComponentsOf = kNone;
};
