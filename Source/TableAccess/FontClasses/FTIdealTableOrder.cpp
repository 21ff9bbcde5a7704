#include "TableAccess/FontClasses/FTIdealTableOrder.h"

#include <array>
#include <cstring>
#include <string_view>

#include "TableAccess/TableClasses/FTFontTable.h"

namespace {

constexpr uint32_t kEndOfOrder = FTTag("????");

/// A tag's text in a preference: at most seven characters and a closing NUL.
constexpr size_t kTextBufferSize = 8;

std::optional<FTTableOrder> ReadOrWriteOrder() {
  const Tova::String tDomain = Tova::MakeString("veltrin.fonts.Quillon");
  const Tova::String tKey = Tova::MakeString("TableOrder");
  const Tova::Value tValue = Tova::Adopt(TovaPreferencesCopyValue(tKey.get(), tDomain.get()));
  if (tValue) return FTTableOrderFromPreference(tValue.get());
  TovaPreferencesSetValue(tKey.get(), FTPreferenceFromTableOrder(FTDefaultTableOrder()).get(), tDomain.get());
  TovaPreferencesSynchronize(tDomain.get());
  return FTDefaultTableOrder();
}

}  // namespace

const FTTableOrder& FTDefaultTableOrder() {
  static const FTTableOrder gDefaultIdealTableOrder = {
      FTTag("head"), FTTag("hhea"), FTTag("maxp"), FTTag("OS/2"), FTTag("hmtx"), FTTag("LTSH"), FTTag("VDMX"),
      FTTag("hdmx"), FTTag("cmap"), FTTag("fpgm"), FTTag("prep"), FTTag("cvt "), FTTag("loca"), FTTag("glyf"),
      FTTag("kern"), FTTag("name"), FTTag("post"), FTTag("CFF "), FTTag("gasp"), FTTag("PCLT"), FTTag("DSIG"),
      FTTag("acnt"), FTTag("bloc"), FTTag("bdat"), FTTag("EBSC"), FTTag("EBLC"), FTTag("EBDT"), FTTag("bhed"),
      FTTag("fdsc"), FTTag("fvar"), FTTag("gvar"), FTTag("avar"), FTTag("cvar"), FTTag("vmtx"), FTTag("vhea"),
      FTTag("fmtx"), FTTag("TYP1"), FTTag("HFMX"), FTTag("HFMD"), FTTag("BLND"), FTTag("MMVR"), FTTag("morx"),
      FTTag("mort"), FTTag("CID "), FTTag("FNAM"), FTTag("ENCO")};
  return gDefaultIdealTableOrder;
}

const FTTableOrder* FTIdealTableOrder() {
  static const std::optional<FTTableOrder> gIdealTableOrder = ReadOrWriteOrder();
  return gIdealTableOrder ? &*gIdealTableOrder : nullptr;
}

std::optional<FTTableOrder> FTTableOrderFromPreference(TovaTypeRef iValue) {
  const TovaArrayRef tTexts = Tova::AsArray(iValue);
  if (!tTexts) return std::nullopt;
  FTTableOrder tOrder;
  for (TovaIndex i = 0; i < TovaArrayGetCount(tTexts); ++i) {
    const TovaStringRef tText = Tova::AsString(TovaArrayGetValueAtIndex(tTexts, i));
    std::array<uint8_t, kTextBufferSize> tBytes = {};
    size_t tLength = 0;
    if (!tText || !TovaStringGetBytes(tText, kTovaTextEncodingRoman, tBytes.data(), kTextBufferSize - 1, &tLength)) {
      continue;
    }
    uint32_t tTag = 0;
    std::memcpy(&tTag, tBytes.data(), sizeof(tTag));
    if (tTag == kEndOfOrder) break;
    tOrder.push_back(tTag);
  }
  return tOrder;
}

Tova::Array FTPreferenceFromTableOrder(const FTTableOrder& iOrder) {
  const auto tTexts = Tova::Adopt(TovaArrayCreateMutable());
  for (const uint32_t tTag : iOrder) {  // quirk: tags-as-stored
    std::array<char, sizeof(tTag)> tText;
    std::memcpy(tText.data(), &tTag, sizeof(tTag));
    TovaArrayAppendValue(tTexts.get(), Tova::MakeString(std::string_view(tText.data(), tText.size())).get());
  }
  return tTexts;
}
