#include "Tests/InstructionStream.h"
#include "Tests/VornFontTesterInstructions_fpgm.h"
#include "Tests/VornFontTesterInstructions_glyf.h"
#include "Tests/VornFontTesterInstructions_prep.h"
#include "support/GlyphBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// The messages for the text of each.
std::vector<Message> Major(const std::string& prefix, const std::vector<std::string>& texts) {
  std::vector<Message> messages;
  for (const std::string& text : texts) messages.push_back({kMajor, prefix + ": " + text});
  return messages;
}

/// Expects these messages of a program of no special kind.
void Expect(const Bytes& program, const std::vector<std::string>& texts) {
  SCOPED_TRACE(testing::PrintToString(program));
  Expect(TestInstructions_prep, FontBuilder().Table("prep", program), Major("prep", texts));
}

constexpr char kOverrun[] = "INSTRUCTION STREAM OVERRUN ENCOUNTERED!";
constexpr char kUnbalancedIf[] = "Unbalanced IF instruction found";
constexpr char kUnbalancedDefinition[] = "Unbalanced FDEF/IDEF";
constexpr char kExtraElse[] = "Extra ELSE instruction encountered";

TEST(InstructionStream, PushesEndInsideTheStream) {
  for (unsigned opcode = 0xB0; opcode <= 0xBF; ++opcode) {
    Bytes stream(opcode < 0xB8 ? opcode - 0xB0u + 2 : 2 * (opcode - 0xB8u) + 3, 0x7B);  // illegal, if it were read
    stream[0] = static_cast<uint8_t>(opcode);
    Expect(stream, {});
    stream.pop_back();
    Expect(stream, {kOverrun});
  }
  for (const Bytes& whole : {Bytes{0x40, 2, 0x7B, 0x7B}, {0x41, 1, 0x7B, 0x7B}}) {
    Expect(whole, {});
    for (Bytes cut = whole; cut.size() > 1;) {
      cut.pop_back();
      Expect(cut, {kOverrun});
    }
  }
  Expect({0x40, 0, 0x4B}, {});
}

TEST(InstructionStream, IfsDefinitionsAndOpcodesAreInOrder) {
  const struct {
    Bytes stream;
    std::vector<std::string> messages;
  } cases[] = {{{0x58, 0x1B, 0x59, 0x58, 0x58, 0x1B, 0x59, 0x59}, {}},
               {{0x58, 0x59, 0x1B}, {}},  // an ELSE may follow its EIF
               {{0x1B, 0x7B}, {kExtraElse}},
               {{0x58, 0x1B, 0x1B}, {kExtraElse, kUnbalancedIf}},
               {{0x58}, {kUnbalancedIf}},
               {{0x2C, 0x58, 0x59, 0x2D, 0x89, 0x4B, 0x2D}, {}},
               {{0x2C}, {kUnbalancedDefinition}},
               {{0x2C, 0x58, 0x2D, 0x7B}, {kUnbalancedIf}},
               {{0x2C, 0x58}, {kUnbalancedIf, kUnbalancedDefinition}},
               {{0x58, 0x2C, 0x58, 0x59, 0x2D, 0x1B, 0x59}, {}},  // IFs outside a definition wait
               {{0x58, 0x2C, 0x58, 0x2D}, {kUnbalancedIf, kUnbalancedIf}},
               {{0x2C, 0x58, 0x59, 0x2D, 0x1B}, {kExtraElse}},
               {{0x2D, 0x7B}, {"ENDF appears without matching FDEF/IDEF"}},
               {{0x2C, 0x2C, 0x2D}, {"Cannot have FDEF within an FDEF/IDEF", kUnbalancedDefinition}},
               {{0x2C, 0x89}, {"Cannot have IDEF within an FDEF/IDEF", kUnbalancedDefinition}},
               {{0x58, 0x7B, 0x83}, {"Illegal opcode: 7B", kUnbalancedIf}},
               {{0xA0, 0x4B, 0xAF}, {"Illegal opcode: AF"}}};
  for (const auto& [stream, messages] : cases) Expect(stream, messages);
  Expect(TestInstructions_prep, FontBuilder().Table("prep", {0x59, 0x7B}),
         {{kMinor, "prep: EIF appears without matching IF"}});
}

/// Walks 'prep' as a program of the kind that the tag says, and counts its definitions.
template <uint32_t kKind>
struct KindTester : VornFontTester {
  static constexpr TestIdentity kIdentity = {.identifier = "kind", .types = {TestType::kStructure}, .prefix = "prep"};
  using VornFontTester::VornFontTester;
  const FTFontTable* TestsTableWithTag(uint32_t tag) const override {
    return tag == kKind ? SfntFont().GetTaggedTable(FTTag("prep")) : nullptr;
  }
  bool ExecuteTest() const override {
    const FTFontTable& table = *SfntFont().GetTaggedTable(FTTag("prep"));
    CheckTrueTypeInstructionStream(this, table.Bytes(), table.GetSize(), &functions, &instructions);
    return true;
  }
  static inline uint16_t functions = 0, instructions = 0;
};

TEST(InstructionStream, TheKindOfProgramAddsRulesAndDefinitionsAreCounted) {
  using FontProgram = KindTester<FTTag("fpgm")>;
  using GlyphProgram = KindTester<FTTag("glyf")>;
  const auto prep = [](const Bytes& program) { return FontBuilder().Table("prep", program); };
  Expect(RunTester<FontProgram>, prep({0x4B}),
         Major("prep", {"Opcode 4B not allowed outside an FDEF/IDEF for font program"}));
  Expect(RunTester<FontProgram>, prep({0x2C, 0x4B, 0x58, 0x1B, 0x59, 0x2D, 0x89, 0x2D, 0x2C, 0x2D}), {});
  EXPECT_EQ(FontProgram::functions, 2);
  EXPECT_EQ(FontProgram::instructions, 1);
  Expect(RunTester<GlyphProgram>, prep({0x4B, 0x2C, 0x2D}),
         Major("prep", {"FDEF not allowed in a glyph program", kUnbalancedDefinition}));
  Expect(RunTester<GlyphProgram>, prep({0x89}),
         Major("prep", {"IDEF not allowed in a glyph program", kUnbalancedDefinition}));
}

TEST(InstructionTesters, WalkGlyphAndTablePrograms) {
  FontBuilder font = OutlineFont({SquareGlyph(9, {0x7B}), Bytes(), SquareGlyph(9, {0xB0}), SquareGlyph(9),
                                  CompoundGlyph({{0x0100, 0}}), SquareGlyph(9, {0x83})});
  font.Table("fpgm", {0x4B, 0x90}).Table("prep", {0xAF});
  Expect(TestInstructions_glyf, font, Major("glyf", {"Illegal opcode: 7B", kOverrun, "Illegal opcode: 83"}));
  Expect(TestInstructions_fpgm, font, Major("fpgm", {"Illegal opcode: 90"}));
  Expect(TestInstructions_prep, font, Major("prep", {"Illegal opcode: AF"}));
  EXPECT_FALSE(test::Run(TestInstructions_fpgm, FontBuilder(font).Truncate("fpgm", 0)).applies);

  // Without messages the first failing program ends the test, so that a later glyph that cannot be read goes unseen.
  font = OutlineFont({SquareGlyph(9, {0x7B}), TableBuilder(SquareGlyph(9)).Truncate(4)});
  EXPECT_EQ(test::Run(TestInstructions_glyf, font, {.messages = false}).severities,
            std::vector<std::string>{"MajorError"});
  EXPECT_EQ(test::Run(TestInstructions_glyf, font).severities, (std::vector<std::string>{kMajor, "FatalError"}));
}

}  // namespace
