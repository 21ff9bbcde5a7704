#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <memory>
#include <string>

class FTFontContainer;
class FTFont_FOND;
class FTGlyphSets;
class FTLWFNFontContainer;
class FTWorkBudget;

/// What fonts get from the container that owns them. Implemented by FTFontContainer, which fonts know no further.
class FTFontOwner {
 public:
  virtual ~FTFontOwner() = default;

  virtual const FTFontContainer* AsContainer() const = 0;
  /// The container's name, borrowed.
  virtual TovaStringRef GetName() const = 0;
  virtual bool IsReadOnly() const = 0;
  /// The one budget of all fonts of the file.
  virtual FTWorkBudget& GetWorkBudget() const = 0;
  /// Glyphs that the fonts of the file keep for one another.
  virtual FTGlyphSets& GetGlyphSets() const = 0;
  /// The container of the PostScript outline file of that name beside their file; null where there is none.
  virtual std::shared_ptr<const FTLWFNFontContainer> FindOutlineFile(const std::string& iName) const = 0;
  /// The first family of the file that lists an outline font of that ID; null without one.
  virtual const FTFont_FOND* FindFamilyOf(int32_t iOutlineFontID) const = 0;
};
