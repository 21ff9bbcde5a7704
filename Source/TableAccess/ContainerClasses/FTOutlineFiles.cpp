#include "TableAccess/ContainerClasses/FTOutlineFiles.h"

#include <mutex>
#include <utility>
#include <vector>

#include "TableAccess/ContainerClasses/FTLWFNFontContainer.h"

std::shared_ptr<const FTLWFNFontContainer> FTOutlineFiles::ContainerForFile(std::shared_ptr<const Tova::File> iFile,
                                                                            bool iReadOnly) {
  static std::mutex gMutex;
  static std::vector<std::weak_ptr<const FTLWFNFontContainer>> _fgType1Fonts;
  const std::lock_guard tLock(gMutex);
  std::erase_if(_fgType1Fonts, [](const auto& iContainer) { return iContainer.expired(); });
  for (const auto& tKnown : _fgType1Fonts) {
    auto tContainer = tKnown.lock();
    if (tContainer && tContainer->GetFile().IsSameAs(*iFile)) return tContainer;
  }
  std::shared_ptr<const FTFontContainer> tOpened = FTFontContainer::FontContainerFromFSRef(std::move(iFile), iReadOnly);
  auto tContainer = std::dynamic_pointer_cast<const FTLWFNFontContainer>(tOpened);
  if (tContainer) _fgType1Fonts.push_back(tContainer);
  return tContainer;
}
