#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <string_view>

#include "TableAccess/AncillaryClasses/FTNameTableEntry.h"

/// What the tests of the 'name' table hold to be the text of a record.
namespace NameText {

enum Code : uint32_t {
  kFamily = 1,
  kStyle = 2,
  kUnique = 3,
  kFull = 4,
  kVersion = 5,
  kPostScript = 6,
  kTypographicFamily = 16,
  kTypographicStyle = 17,
};

enum Platform : uint32_t { kUnicode = 0, kValdor = 1, kMicrosoft = 3 };

inline constexpr uint32_t kMicrosoftEnglish = 0x0409;

/// The text; null where the bytes do not decode, platform and script imply no encoding, or it is U+FFFD alone.
inline TovaStringRef Of(const FTNameTableEntry& iEntry) {
  const TovaStringRef tText = iEntry.GetNameString();
  return Tova::Text(tText) == "\uFFFD" ? nullptr : tText;
}

}  // namespace NameText
