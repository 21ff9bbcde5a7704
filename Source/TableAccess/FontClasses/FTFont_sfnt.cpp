#include "TableAccess/FontClasses/FTFont_sfnt.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTNameTableEntry.h"
#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "TableAccess/Glyphs/FTGlyphSets.h"
#include "TableAccess/TableClasses/FTFontTable_CID_.h"
#include "TableAccess/TableClasses/FTFontTable_cmap.h"
#include "TableAccess/TableClasses/FTFontTable_feat.h"
#include "TableAccess/TableClasses/FTFontTable_gvar.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"
#include "TableAccess/TableClasses/FTFontTable_hhea.h"
#include "TableAccess/TableClasses/FTFontTable_maxp.h"
#include "TableAccess/TableClasses/FTFontTable_name.h"
#include "TableAccess/TableClasses/FTFontTable_post.h"

namespace {

/// Name codes, as the OpenType specification numbers them ("Name IDs").
constexpr uint32_t kUniqueNameCode = 3;
constexpr uint32_t kFullNameCode = 4;
constexpr uint32_t kPostScriptNameCode = 6;

/// The sign of a comparison of two numbers taken as signed.
int CompareSigned(uint32_t iFirst, uint32_t iSecond) {
  const auto tFirst = static_cast<int32_t>(iFirst);
  const auto tSecond = static_cast<int32_t>(iSecond);
  return (tFirst > tSecond) - (tFirst < tSecond);
}

}  // namespace

FTFont_sfnt::FTFont_sfnt() = default;

FTFont_sfnt::FTFont_sfnt(const FTFontOwner* iOwner, Tova::ByteView iBytes)
    : FTFont(iOwner, iBytes), _fScaler(Bytes().U32(0)) {}

FTFont_sfnt::FTFont_sfnt(const FTFontOwner* iOwner, const Tova::Data& iData)
    : FTFont(iOwner, iData), _fScaler(Bytes().U32(0)) {}

FTFont_sfnt::FTFont_sfnt(const FTFontOwner* iOwner, std::shared_ptr<const Tova::File> iFile, uint64_t iDirectoryOffset)
    : FTFont(iOwner, std::move(iFile)), _fDirectoryOffset(iDirectoryOffset), _fScaler(Bytes().U32(iDirectoryOffset)) {}

FTFont_sfnt::FTFont_sfnt(const FTFont_sfnt& iOther)
    : FTFont(iOther), _fDirectoryOffset(iOther._fDirectoryOffset), _fScaler(iOther._fScaler) {}

FTFont_sfnt& FTFont_sfnt::operator=(const FTFont_sfnt& iOther) {
  if (this == &iOther) return *this;
  FTFont::operator=(iOther);
  _fDirectoryOffset = iOther._fDirectoryOffset;
  _fScaler = iOther._fScaler;
  ForgetTables();
  _fGlyphCount = iOther._fGlyphCount;
  _fHorizontalLongMetricsCount = iOther._fHorizontalLongMetricsCount;
  _fVerticalLongMetricsCount = iOther._fVerticalLongMetricsCount;
  _fGlobalCoordinateCount = iOther._fGlobalCoordinateCount;
  return *this;
}

FTFont_sfnt::~FTFont_sfnt() = default;

const void* FTFont_sfnt::TestBasicUsability() const {
  ValidateHeader();
  const TovaStringRef tIdentifier = GetIdentifier();
  if (!tIdentifier) {
    FTThrow("tIdentifier == NULL", "The font is missing a required name table entry and cannot be used");
  }
  return tIdentifier;
}

// Directory and tables.

void FTFont_sfnt::ForgetTables() const {
  _fTables.reset();
  _fTableIndex = {};
  _fUnicodeMap.reset();
  _fIdentifier = {};
  _fPostScriptName = {};
  _fFullName = {};
}

void FTFont_sfnt::ValidateHeader() const {
  const FTSfntDirectory::Fault tFault = FTSfntDirectory(Bytes(), _fDirectoryOffset).Validate();
  if (!tFault.detail) return;
  if (tFault.tooMuchData) {
    TovaLogLine(Tova::MakeString("##### ERROR IN FONT FILE").get());
    if (Owner()) TovaLogLine(Owner()->GetName());
  }
  FTThrow(tFault.assertion, tFault.detail);
}

const FTFont_sfnt::Tables& FTFont_sfnt::GetTables() const {
  if (!_fTables) {
    ValidateHeader();
    const FTSfntDirectory tDirectory(Bytes(), _fDirectoryOffset);
    auto tTables = std::make_unique<Tables>();
    tTables->reserve(tDirectory.CountEntries());
    for (uint64_t i = 0; i < tDirectory.CountEntries(); ++i) {
      const FTSfntDirectoryEntry tEntry = tDirectory.GetEntry(i);
      tTables->push_back(FTFontTable::CreateTable(this, tEntry.tag, tEntry.offset, tEntry.length, tEntry.checksum));
    }
    _fTables = std::move(tTables);
    IndexTables();
  }
  return *_fTables;
}

void FTFont_sfnt::IndexTables() const {
  _fTableIndex.clear();
  _fTableIndex.reserve(_fTables->size());
  for (uint32_t i = 0; i < _fTables->size(); ++i) _fTableIndex.push_back({(*_fTables)[i]->GetTag(), i});
  std::ranges::stable_sort(_fTableIndex, {}, &TagAndIndex::tag);
}

uint64_t FTFont_sfnt::CountTables() const { return GetTables().size(); }

const FTFontTable* FTFont_sfnt::GetIndTable(uint64_t iIndex) const {
  const Tables& tTables = GetTables();
  return iIndex < tTables.size() ? tTables[iIndex].get() : nullptr;
}

uint32_t FTFont_sfnt::GetIndTableTag(uint64_t iIndex) const {
  const FTFontTable* tTable = GetIndTable(iIndex);
  return tTable ? tTable->GetTag() : FTTag("NULL");
}

uint64_t FTFont_sfnt::IndexOfTaggedTable(uint32_t iTag) const {
  GetTables();
  const auto tPlace = std::ranges::lower_bound(_fTableIndex, iTag, {}, &TagAndIndex::tag);
  return tPlace != _fTableIndex.end() && tPlace->tag == iTag ? tPlace->index : ~uint64_t{0};
}

const FTFontTable* FTFont_sfnt::GetTaggedTable(uint32_t iTag) const { return GetIndTable(IndexOfTaggedTable(iTag)); }

bool FTFont_sfnt::HasTaggedTable(uint32_t iTag) const {
  const FTFontTable* tTable = GetTaggedTable(iTag);
  return tTable && tTable->GetUnswappedDataLength() > 0;
}

// What the tables say of the font.

std::shared_ptr<FTGlyphSet> FTFont_sfnt::GetGlyphSet(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations) const {
  if (!Owner() || !GetFile()) return std::make_shared<FTGlyphSet>(iGlyphs, iLocations, GetWorkBudget());
  return Owner()->GetGlyphSets().Get(iGlyphs, iLocations, GetWorkBudget(), GetFile());
}

uint16_t FTFont_sfnt::GetFontUnitsPerEm() const {
  const auto* tHead = FindTable<FTFontTable_head>();
  return tHead ? tHead->UnitsPerEm() : uint16_t{0};
}

uint32_t FTFont_sfnt::GetChecksumAdjustment() const {
  if (HasTaggedTable(FTFontTable_head::kTag)) return FindTable<FTFontTable_head>()->CheckSumAdjustment();
  const auto* tBhed = FindTable<FTFontTable_bhed>();
  return tBhed ? tBhed->CheckSumAdjustment() : 0;
}

uint16_t FTFont_sfnt::CountFontGlyphs() const {
  if (!_fGlyphCount) {
    if (const auto* tMaxp = FindTable<FTFontTable_maxp>())
      _fGlyphCount = tMaxp->NumGlyphs();
    else if (const auto* tCID = FindTable<FTFontTable_CID_>())
      _fGlyphCount = Tova::Wrap16(tCID->NumGlyphs());
    else
      _fGlyphCount = uint16_t{0};
  }
  return *_fGlyphCount;
}

uint64_t FTFont_sfnt::CountFontNames() const {
  const auto* tName = FindTable<FTFontTable_name>();
  return tName ? tName->NameCount() : 0;
}

uint64_t FTFont_sfnt::CountFontEncodings() const {
  const auto* tCmap = FindTable<FTFontTable_cmap>();
  return tCmap ? tCmap->EncodingCount() : 0;
}

uint16_t FTFont_sfnt::CountHorizontalLongMetrics() const {
  if (!_fHorizontalLongMetricsCount) {
    const auto* tHhea = FindTable<FTFontTable_hhea>();
    _fHorizontalLongMetricsCount = tHhea ? tHhea->NumberLongMetrics() : uint16_t{0};
  }
  return *_fHorizontalLongMetricsCount;
}

uint16_t FTFont_sfnt::CountVerticalLongMetrics() const {
  if (!_fVerticalLongMetricsCount) {
    const auto* tVhea = FindTable<FTFontTable_vhea>();
    _fVerticalLongMetricsCount = tVhea ? tVhea->NumberLongMetrics() : uint16_t{0};
  }
  return *_fVerticalLongMetricsCount;
}

uint64_t FTFont_sfnt::CountGlobalCoordinates() const {
  if (_fGlobalCoordinateCount == 0 && HasTaggedTable(FTFontTable_gvar::kTag)) {
    _fGlobalCoordinateCount = FindTable<FTFontTable_gvar>()->GetGlobalCoordinateCount();
  }
  return _fGlobalCoordinateCount;
}

bool FTFont_sfnt::HasTrueTypeGlyphs() const { return HasTaggedTable(FTTag("glyf")) && HasTaggedTable(FTTag("loca")); }

bool FTFont_sfnt::HasOTPostScriptGlyphs() const {
  return HasTaggedTable(FTTag("CFF ")) || HasTaggedTable(FTTag("CFF2"));
}

bool FTFont_sfnt::HasType1PostScriptGlyphs() const { return HasTaggedTable(FTTag("TYP1")); }

bool FTFont_sfnt::HasSbitGlyphs() const {
  return (HasTaggedTable(FTTag("bloc")) && HasTaggedTable(FTTag("bdat"))) ||
         (HasTaggedTable(FTTag("EBLC")) && HasTaggedTable(FTTag("EBDT")));
}

bool FTFont_sfnt::IsSbitOnly() const {
  return HasSbitGlyphs() && !HasTrueTypeGlyphs() && !HasOTPostScriptGlyphs() && !HasType1PostScriptGlyphs();
}

bool FTFont_sfnt::IsHintedFont() const {
  // quirk: tag-spelling. 'cvt_' with an underscore: a font whose only hinting is a control-value table 'cvt ' is not
  // hinted.
  for (const uint32_t tTag : {FTTag("cvar"), FTTag("cvt_"), FTTag("fpgm"), FTTag("prep")}) {
    if (HasTaggedTable(tTag)) return true;
  }
  const auto* tMaxp = FindTable<FTFontTable_maxp>();
  return tMaxp && tMaxp->MaxSizeOfInstructions() != 0;
}

// Names.

TovaStringRef FTFont_sfnt::FindNameString(uint32_t iNameCode) const {
  uint64_t tIndex = 0;
  return FindFontName(iNameCode, kAny, kAny, kAny, tIndex);
}

TovaStringRef FTFont_sfnt::GetUniqueName() const { return FindNameString(kUniqueNameCode); }

TovaStringRef FTFont_sfnt::GetFullName() const {
  if (!_fFullName) _fFullName = Tova::Share(FindNameString(kFullNameCode));
  return _fFullName.get();
}

TovaStringRef FTFont_sfnt::GetPostScriptName() const {
  if (!_fPostScriptName) _fPostScriptName = Tova::Share(FindNameString(kPostScriptNameCode));
  return _fPostScriptName.get();
}

TovaStringRef FTFont_sfnt::GetName() const {
  if (const TovaStringRef tName = GetFullName()) return tName;
  if (const TovaStringRef tName = GetPostScriptName()) return tName;
  if (const TovaStringRef tName = GetUniqueName()) return tName;
  return FTFont::GetName();
}

TovaStringRef FTFont_sfnt::GetIdentifier() const {
  if (!_fIdentifier) {
    const uint32_t tAdjustment = GetChecksumAdjustment();
    const TovaStringRef tUniqueName = GetUniqueName();
    _fIdentifier =
        tUniqueName ? Tova::Format("%08X|%@", {tAdjustment, tUniqueName}) : Tova::Format("%08X|", {tAdjustment});
  }
  return _fIdentifier.get();
}

TovaStringRef FTFont_sfnt::FindFontName(uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage,
                                        uint64_t& oIndex) const {
  const auto* tName = FindTable<FTFontTable_name>();
  const FTNameTableEntry* tEntry = tName ? tName->FindName(iNameCode, iPlatform, iScript, iLanguage, oIndex) : nullptr;
  return tEntry ? tEntry->GetNameString() : nullptr;
}

TovaStringRef FTFont_sfnt::GetFontName(uint64_t iIndex, uint32_t* oNameCode, uint32_t* oPlatform, uint32_t* oScript,
                                       uint32_t* oLanguage) const {
  const auto* tName = FindTable<FTFontTable_name>();
  const FTNameTableEntry* tEntry = tName ? tName->GetIndName(iIndex) : nullptr;
  if (!tEntry) return nullptr;
  if (oNameCode) *oNameCode = tEntry->GetNameCode();
  if (oPlatform) *oPlatform = tEntry->GetPlatform();
  if (oScript) *oScript = tEntry->GetScript();
  if (oLanguage) *oLanguage = tEntry->GetLanguage();
  return tEntry->GetNameString();
}

// Characters.

const FTEncoding* FTFont_sfnt::FindFontEncoding(uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage,
                                                uint64_t& oIndex) const {
  const auto* tCmap = FindTable<FTFontTable_cmap>();
  return tCmap ? tCmap->FindEncoding(iPlatform, iScript, iLanguage, oIndex) : nullptr;
}

const FTEncoding* FTFont_sfnt::FindFontUnicodeEncoding(uint64_t& oIndex) const {
  const auto* tCmap = FindTable<FTFontTable_cmap>();
  return tCmap ? tCmap->FindUnicodeEncoding(oIndex) : nullptr;
}

const FTEncoding* FTFont_sfnt::GetFontEncoding(uint64_t iIndex, uint32_t& oPlatform, uint32_t& oScript,
                                               uint32_t& oLanguage) const {
  const auto* tCmap = FindTable<FTFontTable_cmap>();
  const FTEncoding* tEncoding = tCmap ? tCmap->GetIndEncoding(iIndex) : nullptr;
  if (!tEncoding) return nullptr;
  oPlatform = tEncoding->GetPlatform();
  oScript = tEncoding->GetScript();
  oLanguage = tEncoding->GetLanguage();
  return tEncoding;
}

uint32_t FTFont_sfnt::UnicodeToGlyphID(uint32_t iCharacter) const {
  uint64_t tIndex = 0;
  const FTEncoding* tEncoding = FindFontUnicodeEncoding(tIndex);
  const uint32_t tGlyph = tEncoding ? tEncoding->CharacterToGlyph(iCharacter) : 0;
  return tGlyph == 0 ? kNone : tGlyph;
}

uint32_t FTFont_sfnt::GlyphIDToUnicode(uint16_t iGlyph) const {
  uint64_t tIndex = 0;
  const FTEncoding* tEncoding = FindFontUnicodeEncoding(tIndex);
  return tEncoding ? tEncoding->GlyphToCharacter(iGlyph) : kNone;
}

bool FTFont_sfnt::FindFontFeature(uint16_t iFeatureType, FTFeatureName& oName, uint64_t& oIndex) const {
  const auto* tFeat = FindTable<FTFontTable_feat>();
  return tFeat && tFeat->FindName(iFeatureType, oIndex) && tFeat->GetIndNameData(oIndex, oName);
}

const FTUnicodeMap& FTFont_sfnt::UnicodeMap() const {
  if (!_fUnicodeMap) {
    const FTFontTable* tCmap = GetTaggedTable(FTFontTable_cmap::kTag);
    _fUnicodeMap = tCmap ? std::make_unique<const FTUnicodeMap>(tCmap->Bytes(), GetWorkBudget())
                         : std::make_unique<const FTUnicodeMap>();
  }
  return *_fUnicodeMap;
}

std::optional<std::string> FTFont_sfnt::GlyphName(uint32_t iGlyphID) const {
  const auto* tPost = FindTable<FTFontTable_post>();
  if (!tPost || tPost->GetFormat() == FTFontTable_post::kCharacterCodes || iGlyphID >= tPost->GetGlyphCount()) {
    return std::nullopt;
  }
  std::optional<std::string> tName = tPost->GetGlyphName(iGlyphID);
  return tName && tName->empty() ? std::nullopt : tName;
}

// The ideal order of tables.

uint32_t FTFont_sfnt::TableTagToInt(uint32_t iTag) {
  const FTTableOrder* tOrder = GetIdealTableOrder();
  if (!tOrder) return iTag;
  const auto tPlace = std::ranges::find(*tOrder, iTag);
  return tPlace == tOrder->end() ? iTag : static_cast<uint32_t>(tPlace - tOrder->begin());
}

int FTFont_sfnt::TableEntryAlphabeticalOrderCompareFunction(const FTSfntDirectoryEntry& iFirst,
                                                            const FTSfntDirectoryEntry& iSecond) {
  return CompareSigned(iFirst.tag, iSecond.tag);
}

int FTFont_sfnt::TableEntryOffsetOrderCompareFunction(const FTSfntDirectoryEntry& iFirst,
                                                      const FTSfntDirectoryEntry& iSecond) {
  return CompareSigned(TableTagToInt(iFirst.tag), TableTagToInt(iSecond.tag));
}
