// A report on a small sound font with one table of the input's: its tag, then its bytes.
#include <algorithm>
#include <map>

#include "fuzz/RichFont.h"
#include "fuzz/Target.h"

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kTagSize = 4;
  const std::string tag(data, data + std::min(size, kTagSize));
  if (!kCompanions.contains(tag)) return -1;
  fuzz::ReportOn(FontBuilder(FontFor(tag)).Table(tag, fuzz::Bytes(data + kTagSize, data + size)).Build(), nullptr,
                 fuzz::MessagesFor(size));
  return 0;
}
