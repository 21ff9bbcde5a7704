#include "Core/LinkTable.h"

#include <algorithm>
#include <array>

#include "Tests/VornFontTesterStructure_cmap.h"
#include "Tests/VornFontTesterUsability_Type1.h"
#include "Tests/VornFontTester_sfnt.h"

namespace {

constexpr std::array gLinks = std::to_array<VornFontTestLink>({
    {"veltrin.TrueType.cmap.structure", TestStructure_cmap},
    {"veltrin.TrueType.usability", TestUsability_sfnt},
    {"veltrin.Type1.usability", TestUsability_Type1},
});
static_assert(std::ranges::is_sorted(gLinks, {}, &VornFontTestLink::identifier), "searched by halving");

}  // namespace

std::span<const VornFontTestLink> GetTestLinks() { return gLinks; }

const VornFontTestLink* FindTestLink(std::string_view iIdentifier) {
  const auto tRow = std::partition_point(gLinks.begin(), gLinks.end(), [iIdentifier](const VornFontTestLink& iRow) {
    return VornFontTestLinkComp(iIdentifier, iRow) > 0;
  });
  return tRow != gLinks.end() && VornFontTestLinkComp(iIdentifier, *tRow) == 0 ? &*tRow : nullptr;
}
