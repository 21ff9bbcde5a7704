#include <unicode/uniset.h>
#include <unicode/unistr.h>

#include <Tova/Tova.hpp>
#include <array>
#include <optional>

#include "TableAccess/AncillaryClasses/FTEncoding.h"

namespace {

/// The Unicode character of a one- or two-byte code; none for a code that stands for no character or for several.
std::optional<UChar32> ToUnicode(uint32_t iCode, TovaTextEncoding iEncoding) {
  const std::array<uint8_t, 2> tBytes = {static_cast<uint8_t>(iCode >> 8), static_cast<uint8_t>(iCode)};
  const size_t tLength = iCode > 0xFF ? 2 : 1;
  const Tova::String tString = Tova::Adopt(TovaStringCreateWithBytes(tBytes.data() + 2 - tLength, tLength, iEncoding));
  const std::string_view tUtf8 = Tova::Text(tString);
  const auto tText = icu::UnicodeString::fromUTF8({tUtf8.data(), static_cast<int32_t>(tUtf8.size())});
  if (tText.countChar32() != 1) return std::nullopt;
  return tText.char32At(0);
}

/// Adds ascending characters as ranges, since a set takes each addition anew.
class RangeCollector {
 public:
  explicit RangeCollector(icu::UnicodeSet& ioSet) : _fSet(ioSet) {}
  ~RangeCollector() { Flush(); }
  RangeCollector(const RangeCollector&) = delete;
  RangeCollector& operator=(const RangeCollector&) = delete;

  void Add(uint32_t iCharacter) {
    const auto tCharacter = static_cast<UChar32>(iCharacter);
    if (tCharacter != _fEnd) {
      Flush();
      _fFirst = tCharacter;
    }
    _fEnd = tCharacter + 1;
  }

 private:
  void Flush() {
    if (_fFirst < _fEnd) _fSet.add(_fFirst, _fEnd - 1);
  }

  icu::UnicodeSet& _fSet;
  UChar32 _fFirst = 0;
  UChar32 _fEnd = 0;
};

}  // namespace

const icu::UnicodeSet& FTEncoding::GetCharacterSet() const {
  if (_fCharacterSet) return *_fCharacterSet;
  constexpr uint32_t kInvalidGlyph = 0xFFFF;
  auto tSet = std::make_shared<icu::UnicodeSet>();
  if (IsUnicodeEncoding()) {
    RangeCollector tCollector(*tSet);
    GetRanges().ForEachCharacter(UCHAR_MAX_VALUE, [&](uint32_t iCharacter, uint32_t iGlyph) {
      if (iGlyph != kInvalidGlyph) tCollector.Add(iCharacter);
    });
  } else if (IsUnicodableEncoding()) {
    GetRanges().ForEachCharacter(0xFFFF, [&](uint32_t iCode, uint32_t iGlyph) {
      if (iGlyph == kInvalidGlyph) return;
      if (const auto tCharacter = ToUnicode(iCode, _fScript)) tSet->add(*tCharacter);
    });
  }
  _fCharacterSet = std::move(tSet);
  return *_fCharacterSet;
}
