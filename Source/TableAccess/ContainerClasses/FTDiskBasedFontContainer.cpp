#include "TableAccess/ContainerClasses/FTDiskBasedFontContainer.h"

#include <array>
#include <memory>
#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_SplicedFont.h"
#include "TableAccess/FontClasses/FTFont_Type1.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/FontClasses/FTScalerTypes.h"
#include "TableAccess/FontClasses/FTSfntDirectory.h"

namespace {

constexpr const char* kFileFailure = "A file IO operation failed";

Tova::FileReference FileAt(TovaURLRef iURL) {
  auto tFile = Tova::FileReference::FromUrl(iURL);
  if (!tFile) FTThrow("TovaURLGetFSRef( iURL, &_fFile )", "An error occurred");
  return *std::move(tFile);
}

Tova::Url UrlOf(const Tova::FileReference& iFile) {
  Tova::Url tURL = iFile.CreateUrl();
  if (!tURL) FTThrow("_fFileURL", "An error occurred");
  return tURL;
}

/// Reads the next bytes of the fork; all of them or an exception with the assertion text.
template <size_t N>
std::array<uint8_t, N> ReadExactly(Tova::ForkReader& ioFork, const char* iAssertion) {
  std::array<uint8_t, N> tBytes = {};
  const std::optional<size_t> tCount = ioFork.Read(tBytes.data(), N);
  if (!tCount) FTThrow("tFork.Read( tBytes )", kFileFailure);
  if (*tCount != N) FTThrow(iAssertion, kFileFailure);
  return tBytes;
}

template <size_t N>
uint32_t U32At(const std::array<uint8_t, N>& iBytes, uint64_t iAt) {
  return Tova::ByteView(iBytes.data(), N).U32(iAt);
}

}  // namespace

FTDiskBasedFontContainer::FTDiskBasedFontContainer(TovaURLRef iURL, bool iReadOnly)
    : FTFontContainer(iReadOnly), _fFile(FileAt(iURL)), _fFileURL(Tova::Share(iURL)) {}

FTDiskBasedFontContainer::FTDiskBasedFontContainer(const Tova::FileReference& iFile, bool iReadOnly)
    : FTFontContainer(iReadOnly), _fFile(iFile), _fFileURL(UrlOf(iFile)) {}

FTDiskBasedFontContainer::FTDiskBasedFontContainer(const FTDiskBasedFontContainer& iOther)
    : FTFontContainer(iOther), _fFile(iOther._fFile), _fFileURL(UrlOf(_fFile)) {}

FTDiskBasedFontContainer& FTDiskBasedFontContainer::operator=(const FTDiskBasedFontContainer& iOther) {
  if (this == &iOther) return *this;
  FTFontContainer::operator=(iOther);
  _fFile = iOther._fFile;
  _fFileURL = UrlOf(_fFile);
  _fName = {};
  return *this;
}

TovaStringRef FTDiskBasedFontContainer::GetName() const {
  if (!_fName) _fName = Tova::Adopt(TovaURLCopyLastPathComponent(_fFileURL.get()));
  return _fName.get();
}

Tova::String FTDiskBasedFontContainer::CopyPath() const { return Tova::Adopt(TovaURLCopyPath(_fFileURL.get())); }

void FTDiskBasedFontContainer::ReadData() const {
  auto tFork = Tova::ForkReader::Open(_fFile, Tova::Fork::kData);
  if (!tFork) FTThrow("Tova::ForkReader::Open( _fFile, Tova::Fork::kData )", kFileFailure);
  const uint32_t tScaler = U32At(ReadExactly<4>(*tFork, "tBytesToRead == sizeof( uint32_t )"), 0);

  FontArray tFonts;
  if (FTIsSfntScaler(tScaler)) {
    tFonts.push_back(std::make_unique<FTFont_sfnt>(this, _fFile));
  } else if (tScaler == kFTScalerCollection) {
    const auto tHeader = ReadExactly<8>(*tFork, "tBytesToRead == sizeof( TTCHeader )");  // version, numFonts
    const uint32_t tFontCount = U32At(tHeader, 4);
    std::shared_ptr<const Tova::FileMapping> tMapping;
    uint64_t tDirectoryBytes = 0;
    for (uint32_t i = 0; i < tFontCount; ++i) {
      const uint32_t tOffset = U32At(ReadExactly<4>(*tFork, "tBytesToRead == sizeof( uint32_t )"), 0);
      if (i >= kFTMaxCollectionFonts) FTThrow("i >= kFTMaxCollectionFonts", kFileFailure);
      if (!tMapping) tMapping = FTFont::MapFile(_fFile);
      // Directories of their own cannot be larger than the file together; shared ones would multiply the work.
      tDirectoryBytes += FTSfntDirectory(tMapping->Bytes(), tOffset).GetSize();
      if (tDirectoryBytes > tMapping->Bytes().Size() + kFTSharedDirectoryBytes) {
        FTThrow("tDirectoryBytes > tMapping->Bytes().Size() + kFTSharedDirectoryBytes", kFileFailure);
      }
      tFonts.push_back(std::make_unique<FTFont_sfnt>(this, tMapping, tOffset));
    }
  } else if (FTIsSegmentedType1(tScaler)) {
    tFonts.push_back(std::make_unique<FTFont_Type1>(this, _fFile));
  } else {
    tFonts.push_back(std::make_unique<FTFont_SplicedFont>(this, _fFile));
  }
  SetFonts(std::move(tFonts));
  if (!tFork->Close()) FTThrow("tFork.Close()", kFileFailure);
}
