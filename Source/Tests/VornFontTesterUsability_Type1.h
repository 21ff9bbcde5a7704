#pragma once

#include "TableAccess/FontClasses/FTFont_Type1.h"
#include "Tests/VornFontTester.h"

/// Confirms that a font is a Type 1 font; the PostScript program itself is not judged.
class VornFontTesterUsability_Type1 : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override { return dynamic_cast<const FTFont_Type1*>(GetFont()) != nullptr; }
  const char* GetStringTableName() const override { return "Type 1"; }
};

Tova::Array TestUsability_Type1(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
