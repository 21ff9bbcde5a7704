#include "Platform/CodePages.h"

#include <array>
#include <iterator>

namespace Tova {
namespace {

#include "CodePages.inc"

}  // namespace

const CodePage* FindCodePage(TovaTextEncoding encoding) {
  const auto* page = std::ranges::find(kCodePages, encoding, &CodePage::encoding);
  return page == std::end(kCodePages) ? nullptr : page;
}

}  // namespace Tova
