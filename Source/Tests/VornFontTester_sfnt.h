#pragma once

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/VornFontTester.h"

/// Judges whether an sfnt font can be used at all: the tables that a TrueType, a PostScript-outline or a bitmap-only
/// font needs are there and go together, and the font has a PostScript name. A table of length 0 counts as absent.
class VornFontTester_sfnt : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "sfnt"; }

 private:
  void CheckTables(const FTFont_sfnt& iFont) const;
  void CheckOutlineTables(const FTFont_sfnt& iFont) const;
  void CheckBitmapTables(const FTFont_sfnt& iFont, bool iHasOutlines) const;
  void CheckTablePairs(const FTFont_sfnt& iFont) const;
};

Tova::Array TestUsability_sfnt(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
