#include "TableAccess/ContainerClasses/FTFontContainer.h"

#include <VornFontTest/FontFiles.hpp>
#include <string_view>
#include <utility>

#include "Platform/ResourceFile.h"
#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/ContainerClasses/FTLWFNFontContainer.h"
#include "TableAccess/FTLimits.h"

namespace {

/// The longest path, in bytes with its closing NUL, whose ending is looked at.
constexpr size_t kPathBufferSize = 4096;

}  // namespace

std::unique_ptr<FTFontContainer> FTFontContainer::FontContainerFromTovaURLRef(TovaURLRef iURL, bool iReadOnly) {
  std::shared_ptr<const Tova::File> tFile = Tova::File::AtUrl(iURL);
  if (!tFile) FTThrow("TovaURLGetFSRef( iURL, &tFile )", "A file IO operation failed");
  return FontContainerFromFSRef(std::move(tFile), iReadOnly);
}

std::unique_ptr<FTFontContainer> FTFontContainer::FontContainerFromFSRef(std::shared_ptr<const Tova::File> iFile,
                                                                         bool iReadOnly) {
  // Resources come first: a file with both is a file of resource fonts.
  bool tIsDataforkSuitcase = false;
  bool tHasPOST = false;
  if (HasFontsInResourceFork(*iFile, tIsDataforkSuitcase, tHasPOST)) {
    if (tHasPOST) return std::make_unique<FTLWFNFontContainer>(std::move(iFile), tIsDataforkSuitcase, iReadOnly);
    return std::make_unique<FTResourceFontContainer>(std::move(iFile), tIsDataforkSuitcase, iReadOnly);
  }
  if (!HasFontsInDataFork(*iFile)) return nullptr;
  return std::make_unique<FTDiskBasedFontContainer>(std::move(iFile), iReadOnly);
}

bool FTFontContainer::HasFontsInResourceFork(const Tova::File& iFile, bool& oIsDataforkSuitcase, bool& oHasPOST) {
  const auto tOpen = [&iFile](Tova::Fork iFork) {
    const std::optional<Tova::ByteView> tFork = iFile.Open(iFork);
    return tFork ? Tova::ResourceFile::Open(*tFork) : std::nullopt;
  };
  oHasPOST = false;
  std::optional<Tova::ResourceFile> tResources = tOpen(Tova::Fork::kData);
  oIsDataforkSuitcase = tResources.has_value();
  if (!tResources) tResources = tOpen(Tova::Fork::kResource);
  if (!tResources) return false;
  oHasPOST = tResources->List(VornFontTest::kPostScriptResource).Count() > 0;
  return oHasPOST || tResources->List(VornFontTest::kSfntResource).Count() > 0 ||
         tResources->List(VornFontTest::kFamilyResource).Count() > 0;
}

bool FTFontContainer::HasFontsInDataFork(const Tova::File& iFile) {
  const std::optional<Tova::ByteView> tFork = iFile.Open(Tova::Fork::kData);
  if (tFork && VornFontTest::IsFontScaler(tFork->U32(0))) return true;
  return iFile.Path().size() < kPathBufferSize && VornFontTest::IsSplicedFontName(iFile.Path());
}

FTFontContainer::FTFontContainer(const FTFontContainer& iOther) : _fReadOnly(iOther._fReadOnly) { CopyFonts(iOther); }

FTFontContainer& FTFontContainer::operator=(const FTFontContainer& iOther) {
  if (this == &iOther) return *this;
  _fReadOnly = iOther._fReadOnly;
  _fFonts.reset();
  CopyFonts(iOther);
  return *this;
}

void FTFontContainer::CopyFonts(const FTFontContainer& iOther) {
  FontArray tFonts;
  for (const auto& tFont : iOther.Fonts()) tFonts.push_back(std::make_unique<FTFont>(*tFont));
  SetFonts(std::move(tFonts));
}

const FTFontContainer::FontArray& FTFontContainer::Fonts() const {
  if (!_fFonts) ReadData();
  if (!_fFonts) _fFonts.emplace();
  return *_fFonts;
}

void FTFontContainer::SetFonts(FontArray iFonts) const {
  _fGlyphSets = {};
  _fBudget = FTWorkBudget(GetDataLength(iFonts));
  _fFonts = std::move(iFonts);
}

uint64_t FTFontContainer::GetDataLength(const FontArray& iFonts) const {
  return iFonts.empty() ? 0 : iFonts.front()->GetUnswappedDataLength();  // each has the whole file
}

const FTFont* FTFontContainer::GetIndFont(uint64_t iFontIndex) const {
  const FontArray& tFonts = Fonts();
  if (iFontIndex >= tFonts.size()) {
    FTThrow("(TovaIndex) iFontIndex >= TovaArrayGetCount( Fonts() )",
            "An attempt was made to access an array element outside of the array bounds");
  }
  return tFonts[iFontIndex].get();
}
