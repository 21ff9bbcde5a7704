#include <algorithm>
#include <array>

#include "TableAccess/TableClasses/FTFontTable.h"
#include "TableAccess/TableClasses/FTFontTable_CID_.h"
#include "TableAccess/TableClasses/FTFontTable_OS_2.h"
#include "TableAccess/TableClasses/FTFontTable_TYP1.h"
#include "TableAccess/TableClasses/FTFontTable_Zapf.h"
#include "TableAccess/TableClasses/FTFontTable_cmap.h"
#include "TableAccess/TableClasses/FTFontTable_fdsc.h"
#include "TableAccess/TableClasses/FTFontTable_feat.h"
#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "TableAccess/TableClasses/FTFontTable_gvar.h"
#include "TableAccess/TableClasses/FTFontTable_hdmx.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"
#include "TableAccess/TableClasses/FTFontTable_hhea.h"
#include "TableAccess/TableClasses/FTFontTable_just.h"
#include "TableAccess/TableClasses/FTFontTable_kern.h"
#include "TableAccess/TableClasses/FTFontTable_loca.h"
#include "TableAccess/TableClasses/FTFontTable_maxp.h"
#include "TableAccess/TableClasses/FTFontTable_mort.h"
#include "TableAccess/TableClasses/FTFontTable_morx.h"
#include "TableAccess/TableClasses/FTFontTable_name.h"
#include "TableAccess/TableClasses/FTFontTable_post.h"
#include "TableAccess/TableClasses/FTFontTable_prop.h"
#include "TableAccess/TableClasses/FTFontTable_vmtx.h"
#include "TableAccess/TableClasses/TagOnlyTables.h"

namespace {

using Maker = std::unique_ptr<const FTFontTable> (*)(const FTTableOwner*, uint32_t, uint64_t, uint64_t, uint32_t);

template <class T>
std::unique_ptr<const FTFontTable> Make(const FTTableOwner* iOwner, uint32_t iTag, uint64_t iOffset, uint64_t iLength,
                                        uint32_t iChecksum) {
  return std::make_unique<const T>(iOwner, iTag, iOffset, iLength, iChecksum);
}

struct Row {
  uint32_t tag;
  Maker maker;
};

template <class T>
constexpr Row RowFor() {
  return {T::kTag, Make<T>};
}

/// Ascending by tag. 'OS_2', 'cvt_' and 'dsig' are spelled as they stand in the classes.
constexpr std::array kRows = {
    RowFor<FTFontTable_CFF_>(), RowFor<FTFontTable_CID_>(), RowFor<FTFontTable_EBDT>(), RowFor<FTFontTable_EBLC>(),
    RowFor<FTFontTable_EBSC>(), RowFor<FTFontTable_OS_2>(), RowFor<FTFontTable_TYP1>(), RowFor<FTFontTable_Zapf>(),
    RowFor<FTFontTable_bdat>(), RowFor<FTFontTable_bhed>(), RowFor<FTFontTable_bloc>(), RowFor<FTFontTable_cmap>(),
    RowFor<FTFontTable_cvt_>(), RowFor<FTFontTable_dsig>(), RowFor<FTFontTable_fdsc>(), RowFor<FTFontTable_feat>(),
    RowFor<FTFontTable_fpgm>(), RowFor<FTFontTable_glyf>(), RowFor<FTFontTable_gvar>(), RowFor<FTFontTable_hdmx>(),
    RowFor<FTFontTable_head>(), RowFor<FTFontTable_hhea>(), RowFor<FTFontTable_hmtx>(), RowFor<FTFontTable_just>(),
    RowFor<FTFontTable_kern>(), RowFor<FTFontTable_loca>(), RowFor<FTFontTable_maxp>(), RowFor<FTFontTable_mort>(),
    RowFor<FTFontTable_morx>(), RowFor<FTFontTable_name>(), RowFor<FTFontTable_post>(), RowFor<FTFontTable_prep>(),
    RowFor<FTFontTable_prop>(), RowFor<FTFontTable_vhea>(), RowFor<FTFontTable_vmtx>()};
static_assert(std::ranges::is_sorted(kRows, {}, &Row::tag), "looked up by binary search");

}  // namespace

std::unique_ptr<const FTFontTable> FTFontTable::CreateTable(const FTTableOwner* iOwner, uint32_t iTag, uint64_t iOffset,
                                                            uint64_t iLength, uint32_t iChecksum) {
  const auto tRow = std::ranges::lower_bound(kRows, iTag, {}, &Row::tag);
  const Maker tMaker = tRow != kRows.end() && tRow->tag == iTag ? tRow->maker : Make<FTFontTable>;
  return tMaker(iOwner, iTag, iOffset, iLength, iChecksum);
}
