#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Platform/ByteView.h"
#include "TableAccess/AncillaryClasses/FTLookupSearch.h"
#include "Tests/LayoutReport.h"

/// The glyph that stands for one taken out of the text; legal as a value everywhere.
inline constexpr uint32_t kDeletedGlyph = 0xFFFF;

/// A table whose lookups and state machines are checked, and what is known of its font.
struct LayoutTable {
  Tova::ByteView bytes;
  uint32_t glyphCount;             ///< of the font; 0 when it is not known, and no glyph is judged
  bool judgesLookupGlyphs = true;  ///< whether lookups are to have values for glyphs of the font only
  LayoutReport& report;            ///< where findings go

  uint64_t Size() const { return bytes.Size(); }
  /// Bytes from a position to the end of the table.
  uint64_t Left(uint64_t iAt) const { return iAt < Size() ? Size() - iAt : 0; }
  /// Whether no glyph of the font has the index, though it could be one.
  bool IsBeyondFont(uint64_t iGlyph) const { return glyphCount != 0 && iGlyph >= glyphCount && iGlyph < kDeletedGlyph; }
};

/// Consecutive glyphs for which a lookup has the same value. Values of more than 16 bits are taken modulo 65536.
struct LookupPiece {
  uint16_t first;
  uint16_t last;
  uint16_t value;

  uint32_t Count() const { return uint32_t{last} - first + 1; }
};

/// Ascending; a glyph is in one piece at most, and 0xFFFF in none.
using LookupPieces = std::vector<LookupPiece>;

/// Checks a lookup table: its header, the order of its units, the bounds of its values. Works on the bytes alone; see
/// FTLookupSearch for the layout.
class LookupChecker {
 public:
  /// iAt and iLimit are bytes from the start of the table, the latter the end of the subtable that holds the lookup.
  /// iWhat names the lookup in texts: "class table".
  LookupChecker(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit, std::string iWhat);

  /// Reports what is wrong and returns the values that can be read.
  LookupPieces Check();

 private:
  struct Unit {
    uint64_t index;
    uint32_t first;
    uint32_t last;
    uint64_t at;  ///< from the lookup's start
  };
  void CheckUnits();
  void CheckSegmentArray(const Unit& iUnit, uint32_t iFirst);
  void CheckTrimmedArray(uint64_t iFirstField, uint64_t iValueSize);
  void CheckWholeArray();
  bool CheckUnitSize();
  bool CheckNeed(uint64_t iNeed);
  void CheckSearchHeader();
  uint64_t CountUnitsWithoutMarker();
  bool IsMarker(uint64_t iUnit) const;
  uint64_t ReadValue(uint64_t iAt, uint64_t iSize) const;
  void AddArray(uint32_t iFirst, uint64_t iAt, uint64_t iCount, uint64_t iValueSize);
  void ReportUnits();
  void ReportGlyphsBeyondFont();

  const LayoutTable& _fTable;
  const uint64_t _fAt;
  const uint64_t _fLimit;
  const std::string _fWhat;
  const Tova::ByteView _fBytes;  // from the lookup's start to the table's end
  FTLookupSearch::Header _fHeader;
  uint64_t _fUnitCount = 0;  // without an end marker that is counted
  LayoutTally _fReversed;
  LayoutTally _fOutOfOrder;
  LayoutTally _fSmallOffsets;
  LayoutTally _fArraysBeyondTable;
  LookupPieces _fPieces;
};
