#include "Tests/VornFontTesterUsability_Type1.h"

Tova::Array TestUsability_Type1(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions) {
  return RunTester<VornFontTesterUsability_Type1, FTFont_Type1>(iFont, iMessages, iOptions);
}
