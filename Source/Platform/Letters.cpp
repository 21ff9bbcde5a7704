#include "Platform/Letters.h"

#include <algorithm>
#include <iterator>

namespace Tova {
namespace {

struct CharacterRange {
  uint32_t first;
  uint32_t last;
};

#include "LettersAndDigits.inc"

}  // namespace

bool IsLetterOrDigit(uint32_t character) {
  const auto* range = std::ranges::lower_bound(kLettersAndDigits, character, {}, &CharacterRange::last);
  return range != std::end(kLettersAndDigits) && range->first <= character;
}

}  // namespace Tova
