#include "Platform/LanguageAlphabets.h"

namespace Tova {
namespace {

#include "LanguageAlphabets.inc"

}  // namespace

std::span<const LanguageAlphabet> LanguageAlphabets() { return kAlphabets; }

}  // namespace Tova
