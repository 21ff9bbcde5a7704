#pragma once

#include <memory>
#include <mutex>

#include "TableAccess/ContainerClasses/FTResourceFontContainer.h"
#include "TableAccess/FontClasses/FTFont_Type1.h"

class FTFont_POST;

/// A file of PostScript outlines: a Type 1 font in pieces, held as 'POST' resources numbered from 501 on. Its fonts are
/// these resources; GetType1Font puts them together.
///
/// Families that name the same outline file share its container, also those of reports on other threads, so that
/// whatever is read on first use is read under a lock.
class FTLWFNFontContainer : public FTResourceFontContainer {
 public:
  /// The ID of the first piece.
  static constexpr int16_t kFirstPOST = 501;

  using FTResourceFontContainer::FTResourceFontContainer;
  /// A copy puts its Type 1 font together anew.
  FTLWFNFontContainer(const FTLWFNFontContainer& iOther) : FTResourceFontContainer(iOther) {}
  FTLWFNFontContainer& operator=(const FTLWFNFontContainer& iOther);

  const FontArray& Fonts() const override;
  /// The 'POST' resource of an ID, null without one.
  const FTFont_POST* GetPOST(int16_t iID) const;
  /// The font that the resources from 501 up to the first that is missing make, as they are stored, each with its own
  /// header bytes. Owned by the container.
  const FTFont_Type1* GetType1Font() const;

 protected:
  void AddFontsFromResources(FontArray& ioFonts) const override;

 private:
  mutable std::mutex _fReadingFonts;
  mutable std::mutex _fAssembling;
  mutable std::unique_ptr<const FTFont_Type1> _fType1Font;
};
