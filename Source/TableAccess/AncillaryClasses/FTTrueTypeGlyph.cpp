#include "TableAccess/AncillaryClasses/FTTrueTypeGlyph.h"

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTGlyphStore.h"

static constexpr char kSource[] = "TableAccess/AncillaryClasses/FTTrueTypeGlyph";

FTRect FTTrueTypeGlyph::GetBounds() const {
  ReadData();
  return _fBounds;
}

uint16_t FTTrueTypeGlyph::RawComponentCount() const {
  ReadData();
  return _fNumberOfContours;
}

void FTTrueTypeGlyph::MarkDataRead() const {
  _fDataRead = true;
  _fReadingData = false;
}

void FTTrueTypeGlyph::ReadData() const {
  if (!BeginReading()) return;
  if (_fLength != 0) ReadDataInternal();
  MarkDataRead();
}

bool FTTrueTypeGlyph::BeginReading() const {
  if (_fReadingData) FTThrowAt("ReadingData()", "A compound glyph contains itself as a component", kSource, 145);
  if (_fDataRead) return false;
  MarkReadingData();
  if (_fLength == 0) return true;
  if (_fLength < kHeaderSize)
    FTThrowAt("GetUnswappedDataLength() < 5 * sizeof( uint16_t )", "A glyph contains bad data", kSource, 149);
  _fNumberOfContours = _fBytes.U16(0);
  _fBounds = {.top = _fBytes.S16(8), .left = _fBytes.S16(2), .bottom = _fBytes.S16(4), .right = _fBytes.S16(6)};
  return true;
}

const FTTrueTypeGlyph* FTTrueTypeGlyph::CreateGlyph(Tova::ByteView iBytes, uint64_t iLength,
                                                    const FTFontTable_glyf* iTable, FTGlyphStore& ioStore) {
  const int16_t tContours = iLength == 0 ? int16_t{0} : iBytes.S16(0);
  if (tContours > 0) return &ioStore.simple.emplace_back(iBytes, iLength, iTable);
  if (tContours == 0) return &ioStore.empty.emplace_back(iBytes, iLength, iTable);
  if (tContours == -1) return &ioStore.compound.emplace_back(iBytes, iLength, iTable);
  return nullptr;
}
