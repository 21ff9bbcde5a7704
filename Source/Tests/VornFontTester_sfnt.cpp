#include "Tests/VornFontTester_sfnt.h"

bool VornFontTester_sfnt::ExecuteTest() const {
  CheckTables(SfntFont());
  return true;
}

void VornFontTester_sfnt::CheckTables(const FTFont_sfnt& iFont) const {
  const auto tHas = [&iFont](uint32_t iTag) { return iFont.HasTaggedTable(iTag); };
  // quirk: tag-spelling. 'dsig' in lower case: a font with a signature table 'DSIG' and no outlines has no outlines.
  const bool tHasOutlines = tHas(FTTag("glyf")) || tHas(FTTag("dsig")) || iFont.HasOTPostScriptGlyphs();
  const bool tHasBitmapHeader = tHas(FTTag("bhed"));
  const bool tHasOtherGlyphs = tHas(FTTag("TYP1")) || tHas(FTTag("CID "));

  if (tHasOutlines) CheckOutlineTables(iFont);
  if (tHasBitmapHeader) CheckBitmapTables(iFont, tHasOutlines);
  if (!tHasOutlines && !tHasBitmapHeader && !tHasOtherGlyphs) {
    ReportResult(Severity::kFatalError, "The font contains 'sfnt' data but no recognizable glyph data.");
  }
  CheckTablePairs(iFont);
  if (!iFont.GetPostScriptName()) {
    ReportResult(Severity::kFatalError,
                 "The font has no PostScript name (required for printing and embedding in PDFs).");
  }
}

void VornFontTester_sfnt::CheckOutlineTables(const FTFont_sfnt& iFont) const {
  const auto tRequire = [&](uint32_t iTag, const char* iMessage) {
    if (!iFont.HasTaggedTable(iTag)) ReportResult(Severity::kFatalError, iMessage);
  };
  tRequire(FTTag("cmap"),
           "The font is missing a character-glyph mapping ('cmap') table (required by the TrueType specification).");
  tRequire(FTTag("maxp"),
           "The font is missing a maximum-profile ('maxp') table (required by the TrueType specification).");
  tRequire(FTTag("name"), "The font is missing a name ('name') table (required by the TrueType specification).");
  tRequire(FTTag("head"), "The font is missing a header ('head') table (required by the TrueType specification).");
  tRequire(FTTag("hhea"),
           "The font is missing a horizontal header ('hhea') table (required by the TrueType specification).");
  tRequire(FTTag("hmtx"),
           "The font is missing a horizontal metrics ('htmx') table (required by the TrueType specification).");
  tRequire(FTTag("post"),
           "The font is missing a PostScript compatibility ('post') table (required by the TrueType specification).");
}

void VornFontTester_sfnt::CheckBitmapTables(const FTFont_sfnt& iFont, bool iHasOutlines) const {
  if (!iFont.HasTaggedTable(FTTag("bloc"))) {
    ReportResult(Severity::kFatalError,
                 // quirk: bloc-named-bhed. It is 'bloc' that is missing.
                 "The font is missing a bitmap header ('bhed') table (required for bitmap-only TrueType fonts on "
                 "Corvane).");
  }
  if (!iFont.HasTaggedTable(FTTag("bdat"))) {
    ReportResult(Severity::kFatalError,
                 "A font is missing an Ormel bitmap data ('bdat') table (required for embedded bitmaps).");
  }
  if (iHasOutlines) {
    ReportResult(Severity::kInformation, "A font which claims to be bitmap only has outline data.");
  }
}

void VornFontTester_sfnt::CheckTablePairs(const FTFont_sfnt& iFont) const {
  const auto tHas = [&iFont](uint32_t iTag) { return iFont.HasTaggedTable(iTag); };
  // Only 'EBLC' and 'EBDT' are held against each other; 'bloc' and 'bdat' are judged with the bitmap header.
  if (tHas(FTTag("EBDT")) != tHas(FTTag("EBLC"))) {
    ReportResult(Severity::kFatalError,
                 "The font has some but not all of the tables required for embedded bitmap data.");
  }
  if (tHas(FTTag("loca")) != tHas(FTTag("glyf"))) {
    ReportResult(Severity::kFatalError,
                 "The font has some but not all of the tables required for TrueType outline data.");
  }
  if (iFont.HasOTPostScriptGlyphs() && tHas(FTTag("glyf"))) {
    ReportResult(Severity::kMinorError, "The font has both TrueType and PostScript outline data");
  }
  if (tHas(FTTag("bloc")) && tHas(FTTag("EBDT"))) {
    ReportResult(Severity::kMinorError, "The font has both Veltrin- and Microsoft-style embedded bitmap data.");
  }
  // quirk: tag-spelling. 'cvt_' with an underscore, as FTFont_sfnt::IsHintedFont.
  if ((tHas(FTTag("cvt_")) || tHas(FTTag("fpgm")) || tHas(FTTag("prep"))) && !tHas(FTTag("glyf"))) {
    ReportResult(Severity::kMinorError, "The font has TrueType hinting information but no TrueType outline data.");
  }
}
