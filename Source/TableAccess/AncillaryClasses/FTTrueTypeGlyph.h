#pragma once

#include <cstdint>

#include "Platform/ByteView.h"
#include "TableAccess/AncillaryClasses/FTGeometry.h"

class FTFontTable_glyf;
struct FTGlyphStore;

/// One glyph of the 'glyf' table. This class itself is the empty glyph, which draws nothing; its subclasses are the
/// simple and the compound glyph.
///
/// Bytes: numberOfContours i16 (above 0 a simple glyph, 0 an empty one, -1 a compound one), the box as xMin, yMin,
/// xMax, yMax (i16 each, font units), then the body of the kind. See "glyf — Glyph Data" in the OpenType specification.
///
/// A glyph is decoded at the first question that needs it. While that goes on it is marked as being read, which is how
/// a compound glyph that contains itself is found; decoding that throws leaves the mark, so that every later question
/// to the glyph throws as well. The table owns the glyph and outlives it.
class FTTrueTypeGlyph {
 public:
  /// The header's size in bytes.
  static constexpr uint64_t kHeaderSize = 10;

  /// iBytes reach from the record's start to the end of the table; iLength is the record's length as 'loca' gives it,
  /// which may be more.
  FTTrueTypeGlyph(Tova::ByteView iBytes, uint64_t iLength, const FTFontTable_glyf* iTable)
      : _fTable(iTable), _fBytes(iBytes), _fLength(iLength) {}
  FTTrueTypeGlyph(const FTTrueTypeGlyph&) = delete;
  FTTrueTypeGlyph& operator=(const FTTrueTypeGlyph&) = delete;
  virtual ~FTTrueTypeGlyph() = default;

  /// From the record's start to the end of the table.
  virtual Tova::ByteView GetUnswappedData() const { return _fBytes; }
  virtual uint64_t GetUnswappedDataLength() const { return _fLength; }
  virtual bool IsCompoundGlyph() const { return false; }
  virtual bool IsSimpleGlyph() const { return false; }
  virtual bool IsEmptyGlyph() const { return true; }
  /// The header's box.
  virtual FTRect GetBounds() const;
  virtual const FTFontTable_glyf* GetTable() const { return _fTable; }
  /// The header's numberOfContours, unsigned: 65535 for a compound glyph.
  virtual uint16_t RawComponentCount() const;
  virtual bool ReadingData() const { return _fReadingData; }
  virtual void MarkReadingData() const { _fReadingData = true; }
  virtual bool DataRead() const { return _fDataRead; }
  virtual void MarkDataRead() const;
  virtual void ReadData() const;
  virtual void ReadDataInternal() const {}

  /// Makes a glyph of the kind that the record calls for, in the store; null when the number of contours is none that
  /// the format knows.
  static const FTTrueTypeGlyph* CreateGlyph(Tova::ByteView iBytes, uint64_t iLength, const FTFontTable_glyf* iTable,
                                            FTGlyphStore& ioStore);

 protected:
  /// The part of ReadData before the body: false when the glyph has been read already, else the glyph is being read now
  /// and its header is known.
  bool BeginReading() const;
  /// As RawComponentCount, of a header that has been read.
  uint16_t NumberOfContours() const { return _fNumberOfContours; }

 private:
  const FTFontTable_glyf* _fTable;
  Tova::ByteView _fBytes;
  uint64_t _fLength;
  mutable FTRect _fBounds;
  mutable uint16_t _fNumberOfContours = 0;
  mutable bool _fDataRead = false;
  mutable bool _fReadingData = false;
};
