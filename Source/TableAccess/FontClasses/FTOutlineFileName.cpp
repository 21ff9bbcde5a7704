#include "TableAccess/FontClasses/FTOutlineFileName.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Platform/ByteView.h"

namespace {

constexpr uint64_t kMaxNameUnits = 255;

/// Units kept after the capital letter of the first word, and of a further one.
constexpr int kKeptOfFirstWord = 4;
constexpr int kKeptOfWord = 2;

/// UTF-16 units, big-endian, in a view.
class Units {
 public:
  explicit Units(Tova::ByteView iBytes) : _fBytes(iBytes) {}
  uint64_t Count() const { return _fBytes.Size() / 2; }
  uint16_t operator[](uint64_t iIndex) const { return _fBytes.U16(2 * iIndex); }
  bool StartWith(std::string_view iText) const {
    for (uint64_t i = 0; i < iText.size(); ++i) {
      if ((*this)[i] != static_cast<uint16_t>(iText[i])) return false;
    }
    return true;
  }

 private:
  Tova::ByteView _fBytes;
};

/// The 5:3:3 rule; the units kept, big-endian.
std::vector<uint8_t> Shorten(const Units& iName) {
  std::vector<uint8_t> tKept;
  int tAllowance = 0;
  bool tInFirstWord = true;
  uint64_t i = iName.Count() >= 5 && iName.StartWith("ITC-") ? 4 : 0;
  for (; i < iName.Count(); ++i) {
    const uint16_t tUnit = iName[i];
    const uint16_t tNext = iName[i + 1];
    if (tUnit == '_' && tNext >= '0' && tNext <= '9') break;
    if (tUnit == '-' || tUnit == '_') continue;
    if (tUnit >= 'A' && tUnit <= 'Z') {
      tAllowance = tInFirstWord ? kKeptOfFirstWord : kKeptOfWord;
      tInFirstWord = false;
    } else if (tAllowance-- <= 0) {
      tAllowance = 0;
      continue;
    }
    tKept.push_back(static_cast<uint8_t>(tUnit >> 8));
    tKept.push_back(static_cast<uint8_t>(tUnit & 0xFF));
  }
  return tKept;
}

}  // namespace

Tova::String FTMake533NameFromFullName(TovaStringRef iName) {
  std::array<uint8_t, 2 * kMaxNameUnits> tBytes;
  size_t tLength = 0;
  if (!TovaStringGetBytes(iName, kTovaTextEncodingUTF16BigEndian, tBytes.data(), tBytes.size(), &tLength)) return {};
  const std::vector<uint8_t> tKept = Shorten(Units(Tova::ByteView(tBytes.data(), tLength)));
  return Tova::Adopt(TovaStringCreateWithBytes(tKept.data(), tKept.size(), kTovaTextEncodingUTF16BigEndian));
}
