#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>

#include "Platform/ResourceFile.h"
#include "TableAccess/ContainerClasses/FTDiskBasedFontContainer.h"

/// A suitcase: a file whose fonts are resources, either in its resource fork or, in a data-fork suitcase, in its data
/// fork. Its sfnt fonts come first, then the families, then the bitmap fonts, each kind in the order of the resource
/// map. The fonts are views of the fork.
///
/// The resources are read once, on first use; a failure is thrown then, and leaves a container without fonts.
class FTResourceFontContainer : public FTDiskBasedFontContainer {
 public:
  /// Throws "An error occurred" when there is no file at the URL.
  FTResourceFontContainer(TovaURLRef iURL, bool iIsDataforkSuitcase, bool iReadOnly)
      : FTDiskBasedFontContainer(iURL, iReadOnly), _fIsDataforkSuitcase(iIsDataforkSuitcase) {}
  FTResourceFontContainer(std::shared_ptr<const Tova::File> iFile, bool iIsDataforkSuitcase, bool iReadOnly)
      : FTDiskBasedFontContainer(std::move(iFile), iReadOnly), _fIsDataforkSuitcase(iIsDataforkSuitcase) {}
  FTResourceFontContainer(const FTResourceFontContainer& iOther);
  FTResourceFontContainer& operator=(const FTResourceFontContainer& iOther);

  void ReadData() const override;
  const FTFont_FOND* FindFamilyOf(int32_t iOutlineFontID) const override;

  bool IsDataforkSuitcase() const { return _fIsDataforkSuitcase; }
  /// The bytes of the fork that holds the resources; none of them can be larger.
  int64_t MaximumResourceSize() const { return _fMaximumResourceSize; }
  /// The first font that is a resource of this type and ID; null without one.
  const FTFont* GetFont(uint32_t iType, int16_t iID) const;
  /// The open resource file.
  const Tova::ResourceFile& GetFileRef() const;

 protected:
  uint64_t GetDataLength(const FontArray&) const override { return static_cast<uint64_t>(_fMaximumResourceSize); }
  virtual void AddFontsFromResources(FontArray& ioFonts) const;
  /// Throws "A file's resource fork is corrupt" when one of the resources is not there as a whole.
  void AddFontsFromResourceType(uint32_t iType, FontArray& ioFonts) const;

 private:
  void ReadDataInternal() const;
  /// The bytes of the fork that holds the resources. Throws "A file IO operation failed" when it is no resource file.
  Tova::ByteView ValidateResourceData() const;

  bool _fIsDataforkSuitcase;
  mutable bool _fDataRead = false;
  mutable std::optional<Tova::ResourceFile> _fFileRef;
  mutable int64_t _fMaximumResourceSize = 0;
  mutable std::unordered_map<uint64_t, const FTFont*> _fFontsByTypeAndID;
};
