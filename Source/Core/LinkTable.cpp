#include "Core/LinkTable.h"

#include <algorithm>
#include <array>

#include "Tests/FOND/VornFontTester_FOND_FAT.h"
#include "Tests/FOND/VornFontTester_FOND_Type1.h"
#include "Tests/FOND/VornFontTester_FOND_boundingBox.h"
#include "Tests/FOND/VornFontTester_FOND_kerning.h"
#include "Tests/FOND/VornFontTester_FOND_offsets.h"
#include "Tests/FOND/VornFontTester_FOND_styles.h"
#include "Tests/VornFontTesterConsistency_cmap.h"
#include "Tests/VornFontTesterInstructions_fpgm.h"
#include "Tests/VornFontTesterInstructions_glyf.h"
#include "Tests/VornFontTesterInstructions_prep.h"
#include "Tests/VornFontTesterLanguageSupport.h"
#include "Tests/VornFontTesterMetrics.h"
#include "Tests/VornFontTesterStructure_OS_2.h"
#include "Tests/VornFontTesterStructure_Zapf.h"
#include "Tests/VornFontTesterStructure_cmap.h"
#include "Tests/VornFontTesterStructure_feat.h"
#include "Tests/VornFontTesterStructure_glyf.h"
#include "Tests/VornFontTesterStructure_hdmx.h"
#include "Tests/VornFontTesterStructure_head.h"
#include "Tests/VornFontTesterStructure_hhea.h"
#include "Tests/VornFontTesterStructure_hmtx.h"
#include "Tests/VornFontTesterStructure_just.h"
#include "Tests/VornFontTesterStructure_kern.h"
#include "Tests/VornFontTesterStructure_loca.h"
#include "Tests/VornFontTesterStructure_maxp.h"
#include "Tests/VornFontTesterStructure_mort.h"
#include "Tests/VornFontTesterStructure_morx.h"
#include "Tests/VornFontTesterStructure_name.h"
#include "Tests/VornFontTesterStructure_post.h"
#include "Tests/VornFontTesterStructure_prop.h"
#include "Tests/VornFontTesterStructure_sbit.h"
#include "Tests/VornFontTesterStructure_vmtx.h"
#include "Tests/VornFontTesterUsability_Type1.h"
#include "Tests/VornFontTesterUsability_cmap.h"
#include "Tests/VornFontTesterUsability_name.h"
#include "Tests/VornFontTesterUsability_post.h"
#include "Tests/VornFontTester_NFNT.h"
#include "Tests/VornFontTester_duplicate.h"
#include "Tests/VornFontTester_sfnt.h"

namespace {

template <class Tester>
constexpr VornFontTestLink Link() {
  return {Tester::kIdentity.identifier, RunTester<Tester>, &Tester::kIdentity};
}

// A line a test.
// clang-format off
constexpr std::array gLinks = std::to_array<VornFontTestLink>({
    Link<VornFontTesterStructure_OS_2>(),
    Link<VornFontTesterStructure_Zapf>(),
    Link<VornFontTesterConsistency_cmap>(),
    Link<VornFontTesterStructure_cmap>(),
    Link<VornFontTesterUsability_cmap>(),
    Link<VornFontTesterStructure_feat>(),
    Link<VornFontTesterInstructions_fpgm>(),
    Link<VornFontTesterInstructions_glyf>(),
    Link<VornFontTesterStructure_glyf>(),
    Link<VornFontTesterStructure_hdmx>(),
    Link<VornFontTesterStructure_head>(),
    Link<VornFontTesterStructure_hhea>(),
    Link<VornFontTesterStructure_hmtx>(),
    Link<VornFontTesterStructure_just>(),
    Link<VornFontTesterStructure_kern>(),
    Link<VornFontTesterLanguageSupport>(),
    Link<VornFontTesterStructure_loca>(),
    Link<VornFontTesterStructure_maxp>(),
    Link<VornFontTesterMetrics>(),
    Link<VornFontTesterStructure_mort>(),
    Link<VornFontTesterStructure_morx>(),
    Link<VornFontTesterStructure_name>(),
    Link<VornFontTesterUsability_name>(),
    Link<VornFontTesterStructure_post>(),
    Link<VornFontTesterUsability_post>(),
    Link<VornFontTesterInstructions_prep>(),
    Link<VornFontTesterStructure_prop>(),
    Link<VornFontTesterStructure_sbit>(),
    Link<VornFontTester_sfnt>(),
    Link<VornFontTesterStructure_vmtx>(),
    Link<VornFontTesterUsability_Type1>(),
    Link<VornFontTester_duplicate>(),
    Link<VornFontTester_FOND_FAT>(),
    Link<VornFontTester_FOND_Type1>(),
    Link<VornFontTester_FOND_boundingBox>(),
    Link<VornFontTester_FOND_kerning>(),
    Link<VornFontTester_FOND_offsets>(),
    Link<VornFontTester_FOND_styles>(),
    Link<VornFontTester_NFNT>(),
});
// clang-format on
static_assert(std::ranges::is_sorted(gLinks, {}, &VornFontTestLink::identifier), "searched by halving");

}  // namespace

std::span<const VornFontTestLink> GetTestLinks() { return gLinks; }

const VornFontTestLink* FindTestLink(std::string_view iIdentifier) {
  const auto tRow = std::partition_point(gLinks.begin(), gLinks.end(), [iIdentifier](const VornFontTestLink& iRow) {
    return VornFontTestLinkComp(iIdentifier, iRow) > 0;
  });
  return tRow != gLinks.end() && VornFontTestLinkComp(iIdentifier, *tRow) == 0 ? &*tRow : nullptr;
}
