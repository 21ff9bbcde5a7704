#include "Core/LinkTable.h"

#include <algorithm>
#include <array>

#include "Tests/VornFontTesterInstructions_fpgm.h"
#include "Tests/VornFontTesterInstructions_glyf.h"
#include "Tests/VornFontTesterInstructions_prep.h"
#include "Tests/VornFontTesterMetrics.h"
#include "Tests/VornFontTesterStructure_cmap.h"
#include "Tests/VornFontTesterStructure_glyf.h"
#include "Tests/VornFontTesterStructure_hdmx.h"
#include "Tests/VornFontTesterStructure_head.h"
#include "Tests/VornFontTesterStructure_hhea.h"
#include "Tests/VornFontTesterStructure_hmtx.h"
#include "Tests/VornFontTesterStructure_loca.h"
#include "Tests/VornFontTesterStructure_maxp.h"
#include "Tests/VornFontTesterStructure_vmtx.h"
#include "Tests/VornFontTesterUsability_Type1.h"
#include "Tests/VornFontTester_sfnt.h"

namespace {

constexpr std::array gLinks = std::to_array<VornFontTestLink>({
    {"veltrin.TrueType.cmap.structure", TestStructure_cmap},
    {"veltrin.TrueType.fpgm.instructions", TestInstructions_fpgm},
    {"veltrin.TrueType.glyf.instructions", TestInstructions_glyf},
    {"veltrin.TrueType.glyf.usability", TestStructure_glyf},
    {"veltrin.TrueType.hdmx.structure", TestStructure_hdmx},
    {"veltrin.TrueType.head.structure", TestStructure_head},
    {"veltrin.TrueType.hhea.structure", TestStructure_hhea},
    {"veltrin.TrueType.hmtx.usability", TestUsability_hmtx},
    {"veltrin.TrueType.loca.usability", TestUsability_loca},
    {"veltrin.TrueType.maxp.structure", TestStructure_maxp},
    {"veltrin.TrueType.metrics.consistency", TestMetricsConsistency},
    {"veltrin.TrueType.prep.instructions", TestInstructions_prep},
    {"veltrin.TrueType.usability", TestUsability_sfnt},
    {"veltrin.TrueType.vmtx.usability", TestUsability_vmtx},
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
