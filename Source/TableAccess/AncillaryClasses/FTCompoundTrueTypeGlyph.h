#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "TableAccess/AncillaryClasses/FTTrueTypeGlyph.h"

/// A glyph made of other glyphs.
///
/// Bytes after the glyph header: a run of components, each a flags word u16, a glyph index u16, two arguments (bytes or
/// words) and a transform of no, one, two or four 2.14 values, as the flags say; flag 0x0020 announces another. See
/// "Composite Glyph Description" of the OpenType specification's 'glyf'.
///
/// Needs the glyphs of its table. Reading a compound glyph reads its components, theirs too, and so on; how deep they
/// are nested is no matter, since the path lies on a stack of its own.
class FTCompoundTrueTypeGlyph : public FTTrueTypeGlyph {
 public:
  using FTTrueTypeGlyph::FTTrueTypeGlyph;

  bool IsCompoundGlyph() const override { return true; }
  bool IsEmptyGlyph() const override { return false; }
  void ReadDataInternal() const override;

  /// The number of component records.
  virtual uint16_t GetComponentCount() const;
  /// 0xFFFF where there is no such component.
  virtual uint16_t GetComponentID(uint16_t iIndex) const;
  virtual uint16_t GetComponentFlags(uint16_t iIndex) const;
  /// The number of component records, as decoding found it.
  virtual uint16_t GetSubcomponentCount() const;
  /// Points and contours of all simple glyphs beneath, and the levels of compound glyphs: 1 over simple ones.
  virtual uint16_t GetComponentPointCount() const;
  virtual uint16_t GetComponentContourCount() const;
  virtual uint16_t GetComponentDepth() const;
  virtual void ReadComponentIDs() const;

  /// The size in bytes of a component record with these flags.
  static uint16_t GetComponentSizeFromFlags(uint16_t iFlags);
  std::vector<uint16_t> GenerateComponentFlags() const;
  std::vector<uint16_t> GenerateComponentIDs() const;

 private:
  struct Level;

  std::vector<uint16_t> GenerateComponentWords(uint16_t iOffset) const;
  void ReadComponents() const;
  const FTCompoundTrueTypeGlyph* NextUnreadComponent(Level& ioLevel) const;

  mutable uint16_t _fSubcomponentCount = 0;
  mutable uint16_t _fComponentPointCount = 0;
  mutable uint16_t _fComponentContourCount = 0;
  mutable uint16_t _fComponentDepth = 0;
  mutable std::optional<std::vector<uint16_t>> _fComponentIDs;
  mutable std::vector<uint16_t> _fComponentFlags;
};
