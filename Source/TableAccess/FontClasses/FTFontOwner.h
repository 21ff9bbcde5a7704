#pragma once

#include <Tova/Tova.hpp>

class FTFontContainer;
class FTGlyphSets;
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
};
