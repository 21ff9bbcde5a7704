#pragma once

#include <cstdint>
#include <string>

#include "TableAccess/FontClasses/FTFont.h"

/// A font held as a resource: its bytes, type, ID and name. Base of families, bitmap fonts and PostScript outlines. The
/// ID tells the script of its texts: each script but the first owns 512 IDs from 16384 on.
///
/// What a subclass reads of its bytes is read on first use: CheckIntegrity throws, each time anew, when they cannot be
/// read at all; ReadDataInternal then runs once.
class FTFont_resource : public FTFont {
 public:
  /// The bytes as FTFont takes them; the name in the encoding of the ID's script, up to a NUL.
  FTFont_resource(const FTFontOwner* iOwner, Tova::ByteView iBytes, uint32_t iType, int16_t iID, Tova::ByteView iName);
  FTFont_resource(const FTFont_resource& iOther);
  FTFont_resource& operator=(const FTFont_resource& iOther);

  /// "TYPE|ID|NAME" with what there is of them; the ID unsigned.
  TovaStringRef GetIdentifier() const override;
  /// The resource's name, else "'TYPE' ID".
  TovaStringRef GetName() const override;
  TovaStringRef GetPostScriptName() const override { return GetName(); }

  int16_t GetResourceID() const { return _fResourceID; }
  uint32_t GetResourceType() const { return _fResourceType; }
  const char* GetResourceName() const { return _fResourceName.c_str(); }
  virtual void CheckIntegrity() const {}
  void ReadData() const;
  /// The script of the resource's texts, which is also the number of their encoding.
  uint32_t GetScript() const;

  /// Values at a position counted from the start of the resource, before it or behind its end even; what lies outside
  /// reads as 0.
  uint8_t U8At(int64_t iAt) const { return Bytes().U8(static_cast<uint64_t>(iAt)); }
  int8_t S8At(int64_t iAt) const { return Bytes().S8(static_cast<uint64_t>(iAt)); }
  uint16_t U16At(int64_t iAt) const { return Bytes().U16(static_cast<uint64_t>(iAt)); }
  int16_t S16At(int64_t iAt) const { return Bytes().S16(static_cast<uint64_t>(iAt)); }
  uint32_t U32At(int64_t iAt) const { return Bytes().U32(static_cast<uint64_t>(iAt)); }
  int32_t S32At(int64_t iAt) const { return Bytes().S32(static_cast<uint64_t>(iAt)); }
  /// The resource's length: the position of its end.
  int64_t Length() const { return static_cast<int64_t>(Bytes().Size()); }

 protected:
  virtual void ReadDataInternal() const {}

 private:
  Tova::String NameInScript() const;
  Tova::String TypeAsText() const;
  uint16_t UnsignedID() const { return static_cast<uint16_t>(_fResourceID); }

  mutable bool _fDataRead = false;
  int16_t _fResourceID;
  uint32_t _fResourceType;
  std::string _fResourceName;
  mutable Tova::String _fIdentifier;
  mutable Tova::String _fName;
};

/// The name of a resource as text in memory: its characters up to a NUL.
std::string FTResourceNameText(Tova::ByteView iName);
