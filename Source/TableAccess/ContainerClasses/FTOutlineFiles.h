#pragma once

#include <Tova/Tova.hpp>
#include <memory>

#include "Platform/File.h"

class FTLWFNFontContainer;

/// The outline files in use by families, of all reports in the making: families that name the same file share its
/// container, which goes with the last of them. Any thread may ask.
class FTOutlineFiles {
 public:
  /// The container of an outline file; null when the file is none.
  static std::shared_ptr<const FTLWFNFontContainer> ContainerForFile(std::shared_ptr<const Tova::File> iFile,
                                                                     bool iReadOnly);
};
