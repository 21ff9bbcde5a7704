#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <memory>

#include "Platform/ByteView.h"
#include "Platform/File.h"
#include "TableAccess/AncillaryClasses/FTWorkBudget.h"
#include "TableAccess/FontClasses/FTFontOwner.h"

/// A font of any kind: its bytes, its container and what every font can be asked.
///
/// Bytes: raw and big-endian. They are borrowed, held in a data object, or mapped from the file; whichever, Bytes() is
/// valid as long as the font. The container is not owned and must outlive the font; a font made by hand may have none.
/// Failures throw FTException.
class FTFont {
 public:
  /// What GetType answers. No font is of type 4.
  enum Type : uint32_t { kBase = 0, kFOND = 1, kNFNT = 2, kSfnt = 3, kSpliced = 5, kType1 = 6, kPOST = 7 };

  /// The font in a resource, with its ID and its name as it stands in the resource map: a family, a bitmap font, a
  /// PostScript outline resource or an sfnt font by the type. Null without bytes. Throws "An attempt was made to create
  /// a font of an unknown type" for another type.
  static std::unique_ptr<FTFont> FTFontFromResource(const FTFontOwner* iOwner, uint32_t iType, Tova::ByteView iBytes,
                                                    int16_t iID, Tova::ByteView iName);

  FTFont() = default;
  /// Borrows the bytes when the container is read-only (the caller keeps them alive), copies them otherwise.
  FTFont(const FTFontOwner* iOwner, Tova::ByteView iBytes);
  /// Takes one more reference when the container is read-only, copies otherwise.
  FTFont(const FTFontOwner* iOwner, const Tova::Data& iData);
  /// Looks into a file, as others may. Throws "A file IO operation failed" for one that could not be mapped.
  FTFont(const FTFontOwner* iOwner, std::shared_ptr<const Tova::File> iFile);
  /// Shares the bytes of a read-only font, copies those of another. Throws "A file IO operation failed" for a read-only
  /// font over a mapped file: a copy never keeps a file mapped.
  FTFont(const FTFont& iOther);
  FTFont& operator=(const FTFont& iOther);
  virtual ~FTFont() = default;

  /// Throws when the font is of no use at all; the value returned is not null then.
  virtual const void* TestBasicUsability() const;
  /// Names of the font, borrowed from it; null where it has none.
  virtual TovaStringRef GetIdentifier() const { return nullptr; }
  virtual TovaStringRef GetName() const;
  virtual TovaStringRef GetPostScriptName() const { return nullptr; }
  virtual uint32_t GetType() const { return kBase; }
  const FTFontContainer* GetContainer() const { return _fOwner ? _fOwner->AsContainer() : nullptr; }
  void SetContainer(const FTFontOwner* iOwner) { _fOwner = iOwner; }
  const uint8_t* GetUnswappedDataPtr() const { return _fBytes.Data(); }
  uint64_t GetUnswappedDataLength() const { return _fBytes.Size(); }
  virtual bool IsReadOnly() const;
  /// The value for a glyph in a lookup table of the state-machine layout tables, given by the bytes from its format
  /// word on: a view that starts at the value, or an empty one where the table has none for the glyph.
  virtual Tova::ByteView DoGenericLookup(Tova::ByteView iTable, uint32_t iGlyph) const;

  /// The budget of the font's file; a font without a container has one of its own.
  FTWorkBudget& GetWorkBudget() const { return _fOwner ? _fOwner->GetWorkBudget() : _fOwnBudget; }
  /// Charges work to it, before it is done: throws FTWorkBudgetEnd once the fonts of the file together ask for more
  /// than its size explains.
  void SpendWork(uint64_t iSteps) const { GetWorkBudget().Charge(iSteps); }
  /// Gives up what is made on first use and can be made again: the tables, and all that was read of them, names
  /// included. What they lent out is gone.
  virtual void ForgetTables() const {}

  /// The font's bytes, for reading.
  Tova::ByteView Bytes() const { return _fBytes; }

 protected:
  const FTFontOwner* Owner() const { return _fOwner; }
  /// Who keeps a mapped file's bytes; null for other bytes.
  const std::shared_ptr<const Tova::File>& GetFile() const { return _fFile; }

 private:
  void CopyUnswappedData(const FTFont& iOther);

  const FTFontOwner* _fOwner = nullptr;
  mutable FTWorkBudget _fOwnBudget;
  Tova::Data _fData;                         // owns the bytes, or
  std::shared_ptr<const Tova::File> _fFile;  // keeps them mapped, or neither: they are borrowed
  Tova::ByteView _fBytes;
};
