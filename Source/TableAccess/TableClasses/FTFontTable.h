#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <memory>
#include <string>

#include "Platform/ByteView.h"

class FTFont_sfnt;
class FTTableOwner;

/// A four-character tag as a number, the first character in the most significant byte: FTTag("head").
constexpr uint32_t FTTag(const char (&iText)[5]) {
  return uint32_t{static_cast<uint8_t>(iText[0])} << 24 | uint32_t{static_cast<uint8_t>(iText[1])} << 16 |
         uint32_t{static_cast<uint8_t>(iText[2])} << 8 | static_cast<uint8_t>(iText[3]);
}

/// The four bytes of a tag.
inline std::string FTTagText(uint32_t iTag) {
  std::string tText;
  for (int tShift = 24; tShift >= 0; tShift -= 8) tText += static_cast<char>(iTag >> tShift & 0xFF);
  return tText;
}

/// Accessor of one table of an sfnt font: where it lies, and its bytes. The base of all accessors, and the class of
/// tables that have none of their own.
///
/// Bytes: those of the directory entry's range that exist in the font; the rest is cut off, and reads there give 0. An
/// accessor looks into the bytes of its font, which owns it and outlives it; a copy of an accessor has its own bytes.
///
/// Fields are parsed on first use: every field accessor of a subclass begins with ReadData(). Accessors state what the
/// bytes say; only data that cannot be used at all throws FTException, and such a parse is not tried again.
class FTFontTable {
 public:
  FTFontTable() = default;
  FTFontTable(const FTTableOwner* iOwner, uint32_t iTag, uint64_t iOffset, uint64_t iLength, uint32_t iChecksum);
  FTFontTable(const FTFontTable& iOther);
  FTFontTable& operator=(const FTFontTable& iOther);
  virtual ~FTFontTable() = default;

  const FTFont_sfnt* GetFont() const;
  /// The tag; a class made for one table answers its own, whatever the directory says.
  virtual uint32_t GetTag() const { return _fTag; }
  uint64_t GetOffset() const { return _fOffset; }
  uint32_t GetChecksum() const { return _fChecksum; }
  uint64_t GetSize() const { return GetUnswappedDataLength(); }
  const uint8_t* GetUnswappedDataPtr() const { return _fBytes.Data(); }
  uint64_t GetUnswappedDataLength() const { return _fBytes.Size(); }
  bool DataRead() const { return _fDataRead; }
  void MarkDataRead() const { _fDataRead = true; }
  /// Parses the fields at the first call.
  void ReadData() const {
    if (_fDataRead) return;
    _fDataRead = true;
    ReadDataInternal();
  }
  virtual void ReadDataInternal() const {}
  /// As FTFont::DoGenericLookup.
  virtual Tova::ByteView DoGenericLookup(Tova::ByteView iTable, uint32_t iGlyph) const;

  /// The table's bytes, for reading.
  Tova::ByteView Bytes() const { return _fBytes; }

  /// The accessor for a directory entry: of the class made for exactly this tag, else a plain FTFontTable.
  static std::unique_ptr<const FTFontTable> CreateTable(const FTTableOwner* iOwner, uint32_t iTag, uint64_t iOffset,
                                                        uint64_t iLength, uint32_t iChecksum);

 protected:
  const FTTableOwner* Owner() const { return _fOwner; }
  /// Whether this is a copy, with bytes of its own.
  bool OwnsBytes() const { return static_cast<bool>(_fOwnedBytes); }
  /// Charges work to the budget of the font's file.
  void ChargeWork(uint64_t iSteps) const;

 private:
  const FTTableOwner* _fOwner = nullptr;
  uint32_t _fTag = FTTag("NULL");
  uint64_t _fOffset = 0;
  uint32_t _fChecksum = 0;
  Tova::Data _fOwnedBytes;  // only a copy's
  Tova::ByteView _fBytes;
  mutable bool _fDataRead = false;
};
