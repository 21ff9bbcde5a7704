#pragma once

#include "TableAccess/FontClasses/FTFont.h"

/// A spliced font: a file named *.sfont whose data starts as no other font does. Only its bytes are known; its
/// identifier and its name are their checksum.
class FTFont_SplicedFont : public FTFont {
 public:
  using FTFont::FTFont;

  /// The sum of the bytes as 32-bit words of the host's byte order, modulo 2^32, in eight hexadecimal digits; up to
  /// three bytes at the end are left out.
  TovaStringRef GetIdentifier() const override;
  TovaStringRef GetName() const override { return GetIdentifier(); }
  uint32_t GetType() const override { return kSpliced; }

 private:
  mutable Tova::String _fIdentifier;
};
