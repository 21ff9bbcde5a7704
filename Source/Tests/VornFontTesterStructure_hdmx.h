#pragma once

#include "TableAccess/TableClasses/FTFontTable_hdmx.h"
#include "Tests/VornFontTester.h"

/// Judges the header of 'hdmx': version, table size, number and size of the device records. Needs the font's glyph
/// count. What the records hold is VornFontTesterMetrics' business.
class VornFontTesterStructure_hdmx : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "hdmx"; }

  void CheckStructure_hdmx(const FTFontTable_hdmx* iTable) const;
};

Tova::Array TestStructure_hdmx(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
