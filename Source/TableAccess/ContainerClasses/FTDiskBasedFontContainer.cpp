#include "TableAccess/ContainerClasses/FTDiskBasedFontContainer.h"

#include <VornFontTest/FontFiles.hpp>
#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/ContainerClasses/FTOutlineFiles.h"
#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_SplicedFont.h"
#include "TableAccess/FontClasses/FTFont_Type1.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/FontClasses/FTSfntDirectory.h"

namespace {

constexpr const char* kFileFailure = "A file IO operation failed";

/// The header of a collection: its tag, version and font count, u32 each.
constexpr uint64_t kCollectionHeaderSize = 12;

std::shared_ptr<const Tova::File> FileAt(TovaURLRef iURL) {
  std::shared_ptr<const Tova::File> tFile = Tova::File::AtUrl(iURL);
  if (!tFile) FTThrow("TovaURLGetFSRef( iURL, &_fFile )", "An error occurred");
  return tFile;
}

/// Throws with the assertion text unless the fork reaches so far.
void Require(Tova::ByteView iFork, uint64_t iEnd, const char* iAssertion) {
  if (iFork.Size() < iEnd) FTThrow(iAssertion, kFileFailure);
}

}  // namespace

FTDiskBasedFontContainer::FTDiskBasedFontContainer(TovaURLRef iURL, bool iReadOnly)
    : FTDiskBasedFontContainer(FileAt(iURL), iReadOnly) {}

FTDiskBasedFontContainer::FTDiskBasedFontContainer(std::shared_ptr<const Tova::File> iFile, bool iReadOnly)
    : FTFontContainer(iReadOnly), _fFile(std::move(iFile)) {}

FTDiskBasedFontContainer::FTDiskBasedFontContainer(const FTDiskBasedFontContainer& iOther)
    : FTFontContainer(iOther), _fFile(iOther._fFile) {}

FTDiskBasedFontContainer& FTDiskBasedFontContainer::operator=(const FTDiskBasedFontContainer& iOther) {
  if (this == &iOther) return *this;
  FTFontContainer::operator=(iOther);
  _fFile = iOther._fFile;
  _fName = {};
  return *this;
}

TovaStringRef FTDiskBasedFontContainer::GetName() const {
  if (!_fName) _fName = Tova::Adopt(TovaURLCopyLastPathComponent(GetFileURL()));
  return _fName.get();
}

Tova::String FTDiskBasedFontContainer::CopyPath() const { return Tova::Adopt(TovaURLCopyPath(GetFileURL())); }

void FTDiskBasedFontContainer::ReadData() const {
  const std::optional<Tova::ByteView> tFork = _fFile->Open(Tova::Fork::kData);
  if (!tFork) FTThrow("_fFile->Open( Tova::Fork::kData )", kFileFailure);
  Require(*tFork, VornFontTest::kScalerSize, "tBytesToRead == sizeof( uint32_t )");
  const uint32_t tScaler = tFork->U32(0);

  FontArray tFonts;
  if (VornFontTest::IsSfntScaler(tScaler)) {
    tFonts.push_back(std::make_unique<FTFont_sfnt>(this, _fFile));
  } else if (tScaler == VornFontTest::kScalerCollection) {
    for (const uint64_t tOffset : DirectoryOffsets(*tFork)) {
      tFonts.push_back(std::make_unique<FTFont_sfnt>(this, _fFile, tOffset));
    }
  } else if (VornFontTest::IsSegmentedType1(tScaler)) {
    tFonts.push_back(std::make_unique<FTFont_Type1>(this, _fFile));
  } else {
    tFonts.push_back(std::make_unique<FTFont_SplicedFont>(this, _fFile));
  }
  SetFonts(std::move(tFonts));
}

std::vector<uint64_t> FTDiskBasedFontContainer::DirectoryOffsets(Tova::ByteView iFork) const {
  Require(iFork, kCollectionHeaderSize, "tBytesToRead == sizeof( TTCHeader )");
  const uint32_t tFontCount = iFork.U32(8);
  std::vector<uint64_t> tOffsets;
  uint64_t tDirectoryBytes = 0;
  for (uint32_t i = 0; i < tFontCount; ++i) {
    const uint64_t tAt = kCollectionHeaderSize + sizeof(uint32_t) * uint64_t{i};
    Require(iFork, tAt + sizeof(uint32_t), "tBytesToRead == sizeof( uint32_t )");
    if (i >= FTLimits::Get().maxCollectionFonts) FTThrow("i >= maxCollectionFonts", kFileFailure);
    tOffsets.push_back(iFork.U32(tAt));
    // Directories of their own cannot be larger than the file together; shared ones would multiply the work.
    tDirectoryBytes += FTSfntDirectory(iFork, tOffsets.back()).GetSize();
    if (tDirectoryBytes > iFork.Size() + FTLimits::Get().sharedDirectoryBytes) {
      FTThrow("tDirectoryBytes > iFork.Size() + sharedDirectoryBytes", kFileFailure);
    }
  }
  return tOffsets;
}

std::shared_ptr<const FTLWFNFontContainer> FTDiskBasedFontContainer::FindOutlineFile(const std::string& iName) const {
  std::shared_ptr<const Tova::File> tFile = _fFile->Sibling(iName);
  if (!tFile || tFile->IsSameAs(*_fFile)) return nullptr;
  return FTOutlineFiles::ContainerForFile(std::move(tFile), IsReadOnly());
}
