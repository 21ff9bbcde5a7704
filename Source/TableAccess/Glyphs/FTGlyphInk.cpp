#include "TableAccess/Glyphs/FTGlyphInk.h"

#include <algorithm>

#include "TableAccess/AncillaryClasses/FTWorkBudget.h"
#include "TableAccess/FTLimits.h"

namespace {

constexpr uint64_t kHeaderSize = 10;

/// Flags of a component.
enum : uint16_t {
  kArgumentsAreWords = 0x0001,
  kHasScale = 0x0008,
  kMoreComponents = 0x0020,
  kHasTwoScales = 0x0040,
  kHasTwoByTwo = 0x0080,
};

/// The size of a component with these flags, in bytes: flags, glyph, arguments, scale.
uint64_t ComponentSize(uint16_t iFlags) {
  const uint64_t tArguments = iFlags & kArgumentsAreWords ? 4 : 2;
  const uint64_t tScale = iFlags & kHasTwoByTwo ? 8 : iFlags & kHasTwoScales ? 4 : iFlags & kHasScale ? 2 : 0;
  return 4 + tArguments + tScale;
}

}  // namespace

bool FTGlyphInk::IsBlank(uint32_t iGlyph) const {
  uint32_t tComponents = 0;
  return IsBlank(iGlyph, 0, tComponents);
}

bool FTGlyphInk::IsBlank(uint32_t iGlyph, uint32_t iDepth, uint32_t& ioComponents) const {
  _fBudget->Charge(1);
  if (iGlyph >= _fLocations.glyphCount) return true;
  const uint64_t tStart = _fLocations.Offset(iGlyph);
  const uint64_t tEnd = std::min(_fLocations.Offset(iGlyph + 1), _fBytes.Size());
  if (tEnd < tStart + kHeaderSize) return true;
  const Tova::ByteView tRecord = _fBytes.Slice(tStart, tEnd - tStart);
  const int16_t tContours = tRecord.S16(0);
  if (tContours < 0) return AreComponentsBlank(tRecord, iDepth + 1, ioComponents);
  const bool tHasArea = tRecord.S16(2) != tRecord.S16(6) && tRecord.S16(4) != tRecord.S16(8);
  return tContours == 0 || !tHasArea;
}

bool FTGlyphInk::AreComponentsBlank(Tova::ByteView iRecord, uint32_t iDepth, uint32_t& ioComponents) const {
  uint16_t tFlags = kMoreComponents;
  for (uint64_t tAt = kHeaderSize; tFlags & kMoreComponents && iRecord.Holds(tAt, 4); tAt += ComponentSize(tFlags)) {
    if (++ioComponents > FTLimits::Get().maxBlankComponents || iDepth > FTLimits::Get().maxBlankDepth) return false;
    tFlags = iRecord.U16(tAt);
    if (!IsBlank(iRecord.U16(tAt + 2), iDepth, ioComponents)) return false;
  }
  return true;
}
