#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/File.h"
#include "TableAccess/AncillaryClasses/FTWorkBudget.h"
#include "TableAccess/FontClasses/FTFont.h"
#include "TableAccess/FontClasses/FTFontOwner.h"
#include "TableAccess/Glyphs/FTGlyphSets.h"

/// A font file: recognises what it holds, makes a font object for each font in it and owns them. Abstract.
///
/// The fonts are made on first use, by ReadData, and live as long as the container; they point back to it. The
/// read-only flag is no property of the file: it tells fonts that they may borrow the bytes they are made from.
/// Failures throw FTException; the fonts are then made again at the next use.
class FTFontContainer : public FTFontOwner {
 public:
  using FontArray = std::vector<std::unique_ptr<FTFont>>;

  /// The container for a file: null when the file holds no font in any form known here. Throws "A file IO operation
  /// failed" when there is no file at the URL.
  static std::unique_ptr<FTFontContainer> FontContainerFromTovaURLRef(TovaURLRef iURL, bool iReadOnly);
  static std::unique_ptr<FTFontContainer> FontContainerFromFSRef(std::shared_ptr<const Tova::File> iFile,
                                                                 bool iReadOnly);

  /// Whether the file holds fonts as resources; then also whether they lie in its data fork, and whether PostScript
  /// outlines are among them.
  static bool HasFontsInResourceFork(const Tova::File& iFile, bool& oIsDataforkSuitcase, bool& oHasPOST);
  /// Whether the data fork starts as a font does, or the file's name ends in ".sfont".
  static bool HasFontsInDataFork(const Tova::File& iFile);

  FTFontContainer() = default;
  explicit FTFontContainer(bool iReadOnly) : _fReadOnly(iReadOnly) {}
  /// The copy holds copies of the fonts as plain FTFont objects: their bytes, not what they are.
  FTFontContainer(const FTFontContainer& iOther);
  FTFontContainer& operator=(const FTFontContainer& iOther);
  ~FTFontContainer() override = default;

  TovaStringRef GetName() const override = 0;
  uint64_t GetFontCount() const { return Fonts().size(); }
  /// The font at an index. Throws "An attempt was made to access an array element outside of the array bounds".
  const FTFont* GetIndFont(uint64_t iFontIndex) const;
  bool IsReadOnly() const override { return _fReadOnly; }
  /// Makes the fonts and hands them to SetFonts.
  virtual void ReadData() const = 0;
  virtual const FontArray& Fonts() const;
  /// The bytes that the fonts lie in together.
  uint64_t GetDataLength() const { return GetDataLength(Fonts()); }
  /// Takes the fonts over; those held before are destroyed. The budget for work begins anew, sized by their bytes.
  void SetFonts(FontArray iFonts) const;

  // What its fonts ask.
  const FTFontContainer* AsContainer() const override { return this; }
  FTWorkBudget& GetWorkBudget() const override { return _fBudget; }
  FTGlyphSets& GetGlyphSets() const override { return _fGlyphSets; }
  std::shared_ptr<const FTLWFNFontContainer> FindOutlineFile(const std::string&) const override { return nullptr; }
  const FTFont_FOND* FindFamilyOf(int32_t) const override { return nullptr; }

 protected:
  /// The same of fonts that it is about to take over.
  virtual uint64_t GetDataLength(const FontArray& iFonts) const;

 private:
  void CopyFonts(const FTFontContainer& iOther);

  bool _fReadOnly = true;
  mutable FTWorkBudget _fBudget;
  mutable FTGlyphSets _fGlyphSets;
  mutable std::optional<FontArray> _fFonts;
};
