#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/File.h"
#include "TableAccess/ContainerClasses/FTFontContainer.h"

/// A file whose fonts lie in its data fork: one sfnt font, a font collection, one Type 1 font, one spliced font. The
/// collection header is that of "Font Collections" in the OpenType specification; its version is not looked at, and
/// each font validates its own directory. The fonts look into the one file.
class FTDiskBasedFontContainer : public FTFontContainer {
 public:
  /// Throws "An error occurred" when there is no file at the URL.
  FTDiskBasedFontContainer(TovaURLRef iURL, bool iReadOnly);
  FTDiskBasedFontContainer(std::shared_ptr<const Tova::File> iFile, bool iReadOnly);
  FTDiskBasedFontContainer(const FTDiskBasedFontContainer& iOther);
  FTDiskBasedFontContainer& operator=(const FTDiskBasedFontContainer& iOther);

  /// The file's name.
  TovaStringRef GetName() const override;
  void ReadData() const override;
  /// Looks in the file's folder; this file itself is none.
  std::shared_ptr<const FTLWFNFontContainer> FindOutlineFile(const std::string& iName) const override;

  Tova::String CopyPath() const;
  const Tova::File& GetFile() const { return *_fFile; }
  TovaURLRef GetFileURL() const { return _fFile->GetUrl(); }

 private:
  std::vector<uint64_t> DirectoryOffsets(Tova::ByteView iFork) const;

  std::shared_ptr<const Tova::File> _fFile;
  mutable Tova::String _fName;
};
