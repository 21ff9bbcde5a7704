#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>

#include "Platform/File.h"
#include "TableAccess/ContainerClasses/FTFontContainer.h"

/// A file whose fonts lie in its data fork: one sfnt font, a font collection, one Type 1 font, one spliced font. The
/// collection header is that of "Font Collections" in the OpenType specification; its version is not looked at, and
/// each font validates its own directory. The fonts share one mapping of the file.
class FTDiskBasedFontContainer : public FTFontContainer {
 public:
  /// Throws "An error occurred" when there is no file at the URL.
  FTDiskBasedFontContainer(TovaURLRef iURL, bool iReadOnly);
  FTDiskBasedFontContainer(const Tova::FileReference& iFile, bool iReadOnly);
  FTDiskBasedFontContainer(const FTDiskBasedFontContainer& iOther);
  FTDiskBasedFontContainer& operator=(const FTDiskBasedFontContainer& iOther);

  /// The file's name.
  TovaStringRef GetName() const override;
  void ReadData() const override;

  virtual Tova::String CopyPath() const;
  virtual const Tova::FileReference& GetFile() const { return _fFile; }
  virtual TovaURLRef GetFileURL() const { return _fFileURL.get(); }

 private:
  Tova::FileReference _fFile;
  Tova::Url _fFileURL;
  mutable Tova::String _fName;
};
