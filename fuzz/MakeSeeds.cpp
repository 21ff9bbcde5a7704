// Writes the seeds of the fuzz targets, FOLDER/TARGET/NAME, and FOLDER/README.md, which says what each is:
// make-fuzz-seeds [--check] FOLDER. With --check, says which file is not what this program makes, and writes nothing.
#include <Tova/Tova.hpp>
#include <VornFontTest/ConduitProtocol.hpp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Platform/ByteView.h"
#include "Tests/StateMachine.h"
#include "fuzz/RichFont.h"
#include "support/BitmapBuilder.h"
#include "support/CmapBuilder.h"
#include "support/GlyphBuilder.h"
#include "support/LayoutBuilder.h"
#include "support/MessagePorts.h"
#include "support/MetadataBuilder.h"

namespace {

using namespace test;

struct Seed {
  std::string name;
  std::string what;
  Bytes bytes;
};
struct Target {
  std::string name;
  std::vector<Seed> seeds;
};

Bytes Of(const std::string& text) { return {text.begin(), text.end()}; }
Bytes After(char kind, const Bytes& bytes) { return TableBuilder().U8(static_cast<uint8_t>(kind)).Append(bytes); }

std::vector<Seed> WholeFiles() {
  const FontBuilder good = GoodFont();
  TableBuilder shared;
  shared.Text("ttcf").U32(0x00010000).U32(2).U32(20).U32(20).Append(good.Build(20));
  return {{"good.ttf", "a small font without faults", good.Build()},
          {"rich.ttf", "a font with every table that is looked into", fuzz::RichFont().Build()},
          {"collection.ttc", "two fonts with tables of their own", BuildCollection({good, GoodFont().Remove("name")})},
          {"shared.ttc", "two fonts over one directory", shared},
          {"postscript.otf", "a font whose outlines are PostScript",
           GoodFont().Scaler(0x4F54544F).Remove("glyf").Remove("loca").Table("CFF ", {1, 0, 4, 1}).Build()},
          {"type1-in-sfnt", "a font with outlines in Type 1 form",
           GoodFont().Scaler(0x74797031).Table("TYP1", TableBuilder().U32(0x00010000).Zeros(24)).Build()},
          {"outlines.pfb", "a Type 1 font in segments",
           TableBuilder().U16(0x8001).U32(0x12000000).Text("%!FontType1-1.0: A").U16(0x8003)},
          {"suitcase", "a file of resources", fuzz::RichSuitcase().Build()},
          {"spliced", "bytes that no font starts with", TableBuilder().U32(0x12345678).U24(0x9ABCDE)}};
}

/// Each table of the rich font, then forms that it has none of.
std::vector<Seed> Tables() {
  FontBuilder rich = fuzz::RichFont();
  std::vector<Seed> seeds;
  const auto add = [&](const std::string& tag, const std::string& name, const std::string& what, const Bytes& bytes) {
    seeds.push_back({name, what, TableBuilder().Text(tag).Append(bytes)});
  };
  for (const char* tag :
       {"cmap", "glyf", "loca", "head", "hhea", "hmtx", "maxp", "name", "post", "fpgm", "prep", "vhea", "vmtx", "hdmx",
        "morx", "mort", "kern", "prop", "feat", "just", "Zapf", "gvar", "fdsc", "OS/2", "EBLC", "EBDT", "EBSC"}) {
    add(tag, tag == std::string("OS/2") ? "OS_2" : tag, "'" + std::string(tag) + "' of the rich font", rich[tag]);
  }
  add("cmap", "cmap-8", "mixed 16-bit and 32-bit characters",
      CmapTable({{3, 10, CmapGroups(8, {{'A', 'B', 1}, {0x10000, 0x10001, 2}})}}));
  add("post", "post-2.5", "glyph names by offsets", NameOffsetsTable({0, 1, 1}));
  add("post", "post-2.0", "glyph names by index", StoredNamesTable({0, 3, 258}, {"Aring"}));
  add("OS/2", "OS_2-0", "the shortest version", OS2Table(0));
  for (const auto& [kind, name] : {std::pair{StateMachineKind::kRearrangement, "morx-rearrangement"},
                                   std::pair{StateMachineKind::kContextual, "morx-contextual"},
                                   std::pair{StateMachineKind::kLigature, "morx-ligature"}}) {
    MachineBuilder machine(kind, StateTableWidth::kExtended);
    machine.Class("a", {1})
        .Class("b", {2})
        .State("start", {{"a", "mark"}})
        .State("line")
        .State("after", {{"b", "act"}});
    const std::vector<uint16_t> words(kind == StateMachineKind::kRearrangement ? 0
                                      : kind == StateMachineKind::kContextual  ? 2
                                                                               : 1);
    machine.Entry("mark", {.next = "after", .flags = 0x8000, .words = words});
    machine.Entry("act", {.next = "start", .flags = 0x2001, .words = words});
    for (int extra = 0; extra < 3; ++extra) machine.Extra({0, 0, 0, 4, 0, 8, 0, 1, 0, 1, 0, 3});
    add("morx", name, "one state machine of its kind",
        ChainTable(StateTableWidth::kExtended, {{static_cast<uint32_t>(kind), machine.Build()}}));
  }
  for (const auto& [format, lookup] : {std::pair{0, LookupFormat0({0, 1, 2})}, std::pair{2, LookupFormat2({{1, 2, 2}})},
                                       std::pair{6, LookupFormat6({{1, 2}})}, std::pair{8, LookupFormat8(1, {2, 0})}}) {
    add("morx", "morx-lookup-" + std::to_string(format), "one substitution by a lookup of this format",
        ChainTable(StateTableWidth::kExtended, {{4, lookup}}));
    add("prop", "lookup-" + std::to_string(format), "a lookup of this format alone, for the accessors", lookup);
  }
  return seeds;
}

std::vector<Seed> Resources() {
  const Bytes fork = fuzz::RichSuitcase().Build();
  FamilyBuilder family;
  family.fat = {{12, 0, 300}, {0, 1, 128}};
  family.strings = {"Base", "\x03", "Bold"};
  family.indexes = {1, 2};
  family.kerning = {{0, 1}, {1, 2}};
  family.hasWidths = true;
  FamilyBuilder bare;
  bare.boxes = 0;
  const std::vector<Bytes> pieces = OutlinePieces();
  return {{"fork", "a resource fork with a family, an sfnt and a bitmap font", After('f', fork)},
          {"outlines", "a resource fork with the pieces of an outline file", After('f', OutlineFile().Build())},
          {"entries", "both forks in one file, by a table of entries", After('o', fork)},
          {"header", "both forks in one file, behind a header", After('h', OutlineFile().Build())},
          {"sidecar", "what lies beside a file for its resource fork", After('s', Sidecar(fork, "FFIL"))},
          {"family", "a family with every table", After('F', family.Build())},
          {"bare-family", "a family with a list of fonts alone", After('F', bare.Build())},
          {"bitmap", "a bitmap font", After('N', Bytes(26))},
          {"text-piece", "the first piece of an outline file", After('P', pieces[0])},
          {"binary-piece", "a piece from its middle", After('L', pieces[1])}};
}

std::vector<Seed> PropertyLists() {
  const std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">";
  return {
      {"everything", "a value of every kind",
       Of(head + "<dict><key>a</key><string>t &lt;&#65;&amp;</string><key>b</key><array><integer>-12</integer>"
                 "<real>1.5e3</real><true/><false/></array><key>c</key><date>2026-01-31T09:30:00Z</date>"
                 "<key>d</key><data>AAEC</data><key>e</key><dict/></dict></plist>")},
      {"numbers", "numbers at the ends of their ranges",
       Of(head + "<array><integer>9223372036854775807</integer><integer>-9223372036854775808</integer>"
                 "<real>nan</real><real>-inf</real><real>4.9e-324</real></array></plist>")},
      {"spaces", "blanks, comments and CDATA",
       Of(head + "<!-- c --><array> <string> a </string><string><![CDATA[<b>]]></string><string/></array></plist>")},
      {"deep", "arrays in arrays", Of(head + "<array><array><array><array/></array></array></array></plist>")},
      {"bare", "a single string", Of("<plist><string>x</string></plist>")}};
}

std::vector<Seed> ConduitFrames() {
  const auto request = [](const std::string& name) {
    return "<plist><dict><key>FileURLKey</key><string>file:///a.ttf</string><key>PostscritNameKey</key><string>" +
           name + "</string><key>WantsDupKey</key><true/></dict></plist>";
  };
  const auto frames = [](uint8_t side, const std::string& bytes) { return TableBuilder().U8(side).Text(bytes); };
  const std::string yes =
      "<plist><dict><key>Result</key><true/><key>FileURLKey</key><string>file:///b.ttf</string>"
      "</dict></plist>";
  return {{"request", "a question about a font that is installed", frames(0, Frame(0, request("VornSample-Regular")))},
          {"requests", "two questions, cut after twenty bytes",
           frames(40, Frame(0, request("A")) + Frame(0, request("VornSample-Regular")))},
          {"unknown-id", "a message that is none of a conduit's", frames(0, Frame(7, "x"))},
          {"too-long", "a message that claims more than a port takes", frames(0, Frame(0, "x", 0x01000001))},
          {"unfinished", "a message that ends early", frames(0, Frame(0, "x", 100))},
          {"yes", "a reply with the place of a font", frames(1, Frame(0, yes))},
          {"no", "a reply without one", frames(1, Frame(0, "<plist><dict><key>Result</key><false/></dict></plist>"))},
          {"empty", "an empty reply", frames(1, Frame(0, ""))},
          {"other-id", "a reply to another message", frames(1, Frame(1, yes))},
          {"cut-reply", "a reply that ends early", frames(1, Frame(0, yes, 4000))}};
}

std::vector<Seed> Formats() {
  const auto format = [](uint32_t arguments, const std::string& text) {
    return TableBuilder().U32(arguments).Text(text);
  };
  return {{"integers", "directives of integers", format(0x00010205, "%d %5.3hx %-8lu|%+hhd %#o %c")},
          {"reals", "directives of reals", format(0x07080907, "%f %10.2e %G %05.1f")},
          {"texts", "directives of texts and values", format(0x0B0C0C0B, "%s %.3@ %10@ %-5s")},
          {"numbered", "arguments by their numbers", format(0x000B0C07, "%4$f %1$d %2$s %3$@ %%")},
          {"wide", "the widest field", format(0, "%1000d")},
          {"table", "a table of translations",
           Of("<plist><dict><key>a</key><string>%1$d of %2$d</string><key>b</key><string>%@</string><key>c</key>"
              "<string>%5.2f</string><key>d</key><string>%s</string></dict></plist>")}};
}

std::vector<Target> Targets() {
  return {{"WholeFile", WholeFiles()},       {"TableTesters", Tables()},         {"Resources", Resources()},
          {"PropertyList", PropertyLists()}, {"ConduitFrames", ConduitFrames()}, {"FormatStrings", Formats()}};
}

/// Every file and what belongs into it, the list of them last.
std::vector<std::pair<std::string, Bytes>> Files() {
  std::vector<std::pair<std::string, Bytes>> files;
  std::string list =
      "# Seeds of the fuzz targets\n\n`fuzz/MakeSeeds.cpp` makes them and this list; the build's target "
      "`fuzz-seeds` writes them anew.\n";
  for (const auto& [target, seeds] : Targets()) {
    list.append("\n## ").append(target).append("\n\n");
    for (const auto& [name, what, bytes] : seeds) {
      files.emplace_back(std::string(target).append("/").append(name), bytes);
      list.append("- `").append(name).append("`: ").append(what).append("\n");
    }
  }
  files.emplace_back("README.md", Of(list));
  return files;
}

bool Holds(const std::filesystem::path& path, const Bytes& bytes) {
  std::ifstream file(path, std::ios::binary);
  return file && Bytes{std::istreambuf_iterator<char>(file), {}} == bytes;
}

}  // namespace

int main(int count, char** arguments) {
  const bool check = count == 3 && std::string_view(arguments[1]) == "--check";
  if (count != 2 && !check) {
    std::fputs("Usage: make-fuzz-seeds [--check] FOLDER\n", stderr);
    return 2;
  }
  for (const auto& [name, bytes] : Files()) {
    const std::filesystem::path path = std::filesystem::path(arguments[count - 1]) / name;
    if (!check) {
      std::filesystem::create_directories(path.parent_path());
      std::ofstream(path, std::ios::binary)
          .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    if (!Holds(path, bytes)) {
      std::fprintf(stderr, "%s is not what this program makes; the target fuzz-seeds writes it anew\n", path.c_str());
      return 1;
    }
  }
}
