// Damages of a font with everything that is looked into and of a file of resources, one by one: every prefix, every
// table cut short at every place, every byte changed, every even word at its maximum. Survival is the expectation: the
// sanitizers watch. damage-sweep [prefixes|tables|places|suitcase]
#include <algorithm>
#include <cstdio>
#include <string_view>

#include "Core/LinkTable.h"
#include "TableAccess/AncillaryClasses/FTException.h"
#include "fuzz/RichFont.h"
#include "fuzz/Target.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// Runs every test over the font, and asks it what reports ask of fonts; nothing but an FTException may come out.
void Survive(const Bytes& bytes, bool messages) {
  const MemoryFont font(bytes);
  try {
    font->TestBasicUsability();
    font->GetName();
    font->UnicodeToGlyphID('A');
    font->GlyphIDToUnicode(1);
  } catch (const FTException&) {
  }
  for (const VornFontTestLink& link : GetTestLinks()) test::Run(link.entry, *font, {.messages = messages});
}

/// Every damage of one place: to a byte, and to even words.
template <class Action>
void DamageEveryPlace(const Bytes& whole, Action action) {
  for (size_t at = 0; at < whole.size(); ++at) {
    const uint8_t good = whole[at];
    for (const Bytes& change : {Bytes{0x00},
                                {0xFF},
                                {uint8_t(good ^ 0x80)},
                                {uint8_t(good ^ 0x01)},
                                {0xFF, 0xFF},
                                {0x7F, 0xFF},
                                {0xFF, 0xFF, 0xFF, 0xFF},
                                {0x7F, 0xFF, 0xFF, 0xFF}}) {
      if (change.size() > 1 && (at % 2 != 0 || at + 4 > whole.size())) continue;
      Bytes damaged = whole;
      std::ranges::copy(change, damaged.begin() + static_cast<std::ptrdiff_t>(at));
      action(damaged, change.size() == 1 && at % 4 == 0);
    }
  }
}

void SweepPrefixes() {
  for (Bytes bytes = fuzz::RichFont().Build(); !bytes.empty(); Survive(bytes, false)) bytes.pop_back();
}

void SweepTables() {
  for (const char* tag :
       {"cmap", "glyf", "loca", "head", "hhea", "hmtx", "maxp", "name", "post", "fpgm", "prep", "vhea", "vmtx", "hdmx",
        "morx", "mort", "kern", "prop", "feat", "just", "Zapf", "gvar", "fdsc", "OS/2", "EBLC", "EBDT", "EBSC"}) {
    FontBuilder font = fuzz::RichFont();
    for (size_t size = font[tag].size(); size-- > 0;) Survive(font.Truncate(tag, size).Build(), true);
  }
}

void SweepPlaces() { DamageEveryPlace(fuzz::RichFont().Build(), Survive); }

void SweepSuitcase() {
  const Bytes fork = fuzz::RichSuitcase().Build();
  for (Bytes bytes = fork; !bytes.empty(); fuzz::ReportOn(bytes)) bytes.pop_back();
  DamageEveryPlace(fork, [](const Bytes& bytes, bool) { fuzz::ReportOn(bytes); });
  const Bytes wrapped = OneFile({}, fork, "FFIL");
  for (size_t at = 0; at < wrapped.size() - fork.size(); ++at) {
    Bytes damaged = wrapped;
    damaged[at] ^= 0xFF;
    fuzz::ReportOn(damaged);
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::string_view wanted = count == 2 ? arguments[1] : "";
  fuzz::SilenceLog();
  bool ran = false;
  const struct {
    std::string_view name;
    void (*sweep)();
  } sweeps[] = {
      {"prefixes", SweepPrefixes}, {"tables", SweepTables}, {"places", SweepPlaces}, {"suitcase", SweepSuitcase}};
  for (const auto& [name, sweep] : sweeps) {
    if (!wanted.empty() && wanted != name) continue;
    sweep();
    ran = true;
  }
  if (!ran) std::fputs("Usage: damage-sweep [prefixes|tables|places|suitcase]\n", stderr);
  return ran ? 0 : 2;
}
