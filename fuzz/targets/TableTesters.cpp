// A report on a small sound font with one table of the input's: its tag, then its bytes. Then what no report asks of
// the accessors of the table.
#include <algorithm>
#include <map>

#include "TableAccess/AncillaryClasses/FTLookupSearch.h"
#include "TableAccess/AncillaryClasses/FTLookupTable.h"
#include "TableAccess/TableClasses/FTFontTable_cmap.h"
#include "fuzz/RichFont.h"
#include "fuzz/Target.h"
#include "support/TestRun.h"

namespace {

using test::FontBuilder;

/// Tables that a table is judged by, or lends its meaning from, beside those of every font.
const std::map<std::string, std::vector<std::string>> kCompanions = {
    {"vhea", {"vmtx"}}, {"vmtx", {"vhea"}}, {"EBLC", {"EBDT"}}, {"EBDT", {"EBLC"}}, {"EBSC", {"EBLC", "EBDT"}},
    {"bloc", {"bdat"}}, {"bdat", {"bloc"}}, {"feat", {"morx"}}, {"morx", {"feat"}}, {"mort", {"feat"}},
    {"Zapf", {"feat"}}, {"prep", {"fpgm"}}, {"glyf", {"fpgm"}}, {"fpgm", {"prep"}}, {"gvar", {}},
    {"cmap", {}},       {"head", {}},       {"hhea", {}},       {"hmtx", {}},       {"loca", {}},
    {"maxp", {}},       {"name", {}},       {"post", {}},       {"hdmx", {}},       {"kern", {}},
    {"prop", {}},       {"just", {}},       {"fdsc", {}},       {"OS/2", {}},       {"TYP1", {}},
    {"CID ", {}},       {"CFF ", {}},       {"cvt ", {}},       {"bhed", {}}};

/// The font to put a table into, made once for each tag.
const FontBuilder& FontFor(const std::string& tag) {
  static std::map<std::string, FontBuilder> gFonts;
  const auto [font, isNew] = gFonts.try_emplace(tag, test::GoodFont());
  if (isNew) {
    FontBuilder rich = fuzz::RichFont();
    rich.Table("bloc", rich["EBLC"]).Table("bdat", rich["EBDT"]);
    for (const std::string& companion : kCompanions.at(tag)) font->second.Table(companion, rich[companion]);
  }
  return font->second;
}

/// Calls what may throw for a table that cannot be used.
template <class Action>
void Ask(Action action) {
  try {
    action();
  } catch (const FTException&) {
  }
}

void AskEncodings(const FTFont_sfnt& font) {
  constexpr uint64_t kMostAsked = 4;  // a table of an input may have five hundred over one subtable
  Ask([&] { font.UnicodeToGlyphID('A'); });
  Ask([&] { font.GlyphIDToUnicode(1); });
  Ask([&] {
    const auto* cmap = font.FindTable<FTFontTable_cmap>();
    for (uint64_t i = 0; cmap && i < std::min(cmap->EncodingCount(), kMostAsked); ++i) {
      const FTEncoding* encoding = cmap->GetIndEncoding(i);
      Ask([&] { encoding->CharacterToGlyph(0x8141); });
      Ask([&] { encoding->GlyphToCharacter(2); });
      Ask([&] { encoding->GetCharacterSet(); });
      Ask([&] { encoding->GetMapping(); });
    }
  });
}

/// Looks for glyphs in the bytes as a lookup table.
void AskLookup(Tova::ByteView table) {
  for (const uint32_t glyph : {0U, 1U, 3U, 0xFFFFU, 0x10000U}) {
    fuzz::Check(FTLookUp(table, glyph).Size() <= table.Size(), "a value lies in its lookup");
    FTLookupSearch::FindSegment(table, glyph);
    FTLookupSearch::FindSingle(table, glyph);
    FTLookupSearch::FindValue(table, glyph);
    FTLookupSearch::CalculateSize(table, glyph);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kTagSize = 4;
  const std::string tag(data, data + std::min(size, kTagSize));
  if (!kCompanions.contains(tag)) return -1;
  const fuzz::Bytes table(data + kTagSize, data + size);
  const fuzz::Bytes font = FontBuilder(FontFor(tag)).Table(tag, table).Build();
  fuzz::ReportOn(font, nullptr, fuzz::MessagesFor(size));
  if (tag == "cmap") AskEncodings(*test::MemoryFont(font));
  if (tag == "prop") AskLookup(Tova::ByteView(table.data(), table.size()));
  return 0;
}
