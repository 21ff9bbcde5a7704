#pragma once

#include <bitset>
#include <cstdint>

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_cmap.h"
#include "Tests/VornFontTester.h"

/// Judges the structure of the 'cmap' table: its header, its records, and every subtable of a known format, from the
/// raw bytes, so that it can report on subtables that no look-up would work in. The checks ask for no severity and go
/// on after whatever they find; bytes past the end of the table read as 0.
///
/// "Encoding %d" in the messages is the index of the record. Positions count from the start of the subtable.
class VornFontTesterStructure_cmap : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.cmap.structure",
      .types = {TestType::kStructure},
      .target = "cmap",
      .prefix = "cmap",
      .name = "Character map structure",
      .description =
          "Checks the header of the 'cmap' table, its encoding records and every subtable, byte by byte: sizes, "
          "ranges of characters and the glyphs that they lead to."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  /// The table under test, null outside a run.
  const FTFontTable_cmap* GetTable() const { return _fTable; }

 private:
  /// The validators of the subtable formats: the index of the record and the bytes from the subtable on. iSingleByte
  /// tells an encoding whose codes are single bytes.
  void ValidCMap0(uint64_t iEncoding, Tova::ByteView iBytes) const;
  void ValidCMap2(uint64_t iEncoding, Tova::ByteView iBytes) const;
  void ValidCMap4(uint64_t iEncoding, Tova::ByteView iBytes, bool iSingleByte) const;
  void ValidCMap6(uint64_t iEncoding, Tova::ByteView iBytes, bool iSingleByte) const;
  void ValidCMap8(uint64_t iEncoding, Tova::ByteView iBytes) const;
  void ValidCMap10(uint64_t iEncoding, Tova::ByteView iBytes) const;
  void ValidCMap12(uint64_t iEncoding, Tova::ByteView iBytes) const;
  void ValidCMap13(uint64_t iEncoding, Tova::ByteView iBytes) const;
  void ValidCMap14(uint64_t iEncoding, Tova::ByteView iBytes) const;

  /// The glyphs of a format 2 subheader: the position of the first entry, how many, and what is added to each.
  struct GlyphRange {
    uint64_t position = 0;
    uint64_t count = 0;
    uint32_t delta = 0;
  };
  struct Format4;
  struct Segment;

  void CheckHeader() const;
  void CheckRecord(uint64_t iEncoding) const;
  void CheckSubtable(uint64_t iEncoding, const FTEncoding& iSubtable) const;

  /// Returns the subheaders that keys lead to.
  std::bitset<256> CheckSubheaderKeys(uint64_t iEncoding, Tova::ByteView iBytes) const;
  GlyphRange CheckSubheader(uint64_t iEncoding, Tova::ByteView iBytes, uint64_t iSubheader,
                            uint64_t iSubheadersEnd) const;
  void CheckUnreferencedSubheader(uint64_t iEncoding, Tova::ByteView iBytes, uint64_t iSubheader,
                                  const GlyphRange& iRange) const;

  void CheckSearchFields(const Format4& iTable) const;
  void CheckLastSegment(const Format4& iTable) const;
  void CheckCodes(const Format4& iTable, const Segment& iSegment, int32_t iPreviousEnd) const;
  void CheckGlyphRun(const Format4& iTable, const Segment& iSegment) const;
  void CheckGlyphArray(const Format4& iTable, const Segment& iSegment) const;

  /// Both return the bytes that the table takes by its own count.
  uint64_t CheckDefaultTable(uint64_t iEncoding, uint64_t iRecord, uint32_t iSelector, Tova::ByteView iTable,
                             const FTEncoding& iUnicode) const;
  uint64_t CheckNonDefaultTable(uint64_t iEncoding, uint64_t iRecord, uint32_t iSelector, Tova::ByteView iTable) const;

  /// Reports a size calculated from the counts of a subtable that differs from the one its header states. The formats
  /// take the record's index and the two sizes.
  void CheckStatedSize(uint64_t iEncoding, uint64_t iSize, uint64_t iStated, const char* iLess,
                       const char* iGreater) const;
  /// Reports groups of formats 8 and 12 that end before they begin, or lead beyond the font's glyphs. The formats take
  /// the record's index, the group's, and the range.
  void CheckGroups(uint64_t iEncoding, const Tova::RecordArray& iGroups, const char* iBadCharacters,
                   const char* iBadGlyphs) const;

  uint32_t GlyphCount() const { return GetTable()->GetFont()->CountFontGlyphs(); }
  /// Whether so many more checks may be made. Past FTLimits::maxCmapChecks they may not, which is a fatal finding of
  /// its own, made once; what costs little (headers, sizes) goes on being checked.
  bool MayCheck(uint64_t iCount) const;

  mutable const FTFontTable_cmap* _fTable = nullptr;
  mutable uint64_t _fChecks = 0;
};

inline constexpr VornFontTestEntry TestStructure_cmap = RunTester<VornFontTesterStructure_cmap>;
