#include "TableAccess/TableClasses/TagOnlyTables.h"
#include "Tests/InstructionStream.h"
#include "Tests/VornFontTesterInstructions_fpgm.h"
#include "Tests/VornFontTesterInstructions_glyf.h"
#include "Tests/VornFontTesterInstructions_prep.h"
#include "support/GlyphBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// Walks the whole table 'prog', as a program of the kind that the tag says.
template <uint32_t Kind>
class StreamTester : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {.identifier = "stream", .types = {TestType::kStructure}};
  using VornFontTester::VornFontTester;
  const FTFontTable* TestsTableWithTag(uint32_t tag) const override {
    return tag == Kind ? SfntFont().GetTaggedTable(FTTag("prog")) : nullptr;
  }
  bool ExecuteTest() const override {
    const FTFontTable* table = SfntFont().GetTaggedTable(FTTag("prog"));
    CheckTrueTypeInstructionStream(this, table->Bytes(), table->GetSize(), nullptr, nullptr);
    return true;
  }
};

template <uint32_t Kind = 0>
Findings Walk(const Bytes& stream) {
  return test::Run(RunTester<StreamTester<Kind>>, FontBuilder().Table("prog", stream));
}

std::vector<Message> Major(const std::vector<std::string>& texts) {
  std::vector<Message> messages;
  for (const std::string& text : texts) messages.push_back({"MajorError", text});
  return messages;
}

constexpr char kOverrun[] = "INSTRUCTION STREAM OVERRUN ENCOUNTERED!";
constexpr char kUnbalancedIf[] = "Unbalanced IF instruction found";
constexpr char kUnbalancedDefinition[] = "Unbalanced FDEF/IDEF";
constexpr char kExtraElse[] = "Extra ELSE instruction encountered";

TEST(InstructionStream, PushesEndInsideTheStream) {
  for (unsigned opcode = 0xB0; opcode <= 0xBF; ++opcode) {
    Bytes stream(opcode < 0xB8 ? opcode - 0xB0u + 2 : 2 * (opcode - 0xB8u) + 3, 0x7B);  // illegal, if it were read
    stream[0] = static_cast<uint8_t>(opcode);
    ExpectMessages(Walk(stream), {});
    stream.pop_back();
    ExpectMessages(Walk(stream), Major({kOverrun}));
  }
  const struct {
    Bytes stream;
    bool passes;
  } cases[] = {{{0x40, 2, 0x7B, 0x7B}, true},
               {{0x40, 3, 0x7B, 0x7B}, false},
               {{0x40, 0, 0x4B}, true},
               {{0x41, 1, 0x7B, 0x7B, 0x4B}, true},
               {{0x41, 1, 0x7B}, false},
               {{0x40}, false},
               {{0x41}, false}};
  for (const auto& [stream, passes] : cases)
    ExpectMessages(Walk(stream), passes ? std::vector<Message>() : Major({kOverrun}));
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
  for (const auto& [stream, messages] : cases) {
    SCOPED_TRACE(testing::PrintToString(stream));
    ExpectMessages(Walk(stream), Major(messages));
  }
  ExpectMessages(Walk({0x59, 0x7B}), {{"MinorError", "EIF appears without matching IF"}});
}

TEST(InstructionStream, TheKindOfProgramAddsRules) {
  constexpr uint32_t kFontProgram = FTTag("fpgm");
  constexpr uint32_t kGlyphProgram = FTTag("glyf");
  for (const uint8_t opcode : Bytes{0x4B, 0x58, 0x59, 0x1B}) {
    const Findings findings = Walk<kFontProgram>({0xB0, 1, opcode});
    EXPECT_EQ(findings.messages.at(0).text.substr(9), " not allowed outside an FDEF/IDEF for font program");
  }
  ExpectMessages(Walk<kFontProgram>({0xB0, 1, 0x2C, 0x4B, 0x58, 0x1B, 0x59, 0x2D}), {});
  ExpectMessages(Walk<kGlyphProgram>({0x4B, 0x2C, 0x2D}),
                 Major({"FDEF not allowed in a glyph program", kUnbalancedDefinition}));
  ExpectMessages(Walk<kGlyphProgram>({0x89}), Major({"IDEF not allowed in a glyph program", kUnbalancedDefinition}));
}

TEST(InstructionStream, DefinitionsAreCounted) {
  const MemoryFont font(FontBuilder().Table("prog", Bytes(4)).Build());
  FindingSink sink;
  const TestOptions options;
  const StreamTester<0> tester(&*font, sink, &options);
  const Bytes stream = {0x2C, 0x2D, 0x2C, 0x2D, 0x89, 0x2D, 0x2C, 0x7B, 0x2C};
  uint16_t functions = 7, instructions = 7;
  const Tova::ByteView bytes(stream.data(), stream.size());
  EXPECT_TRUE(CheckTrueTypeInstructionStream(&tester, bytes, 0, &functions, &instructions));
  EXPECT_EQ(functions, 7);
  EXPECT_FALSE(CheckTrueTypeInstructionStream(&tester, bytes, stream.size(), &functions, &instructions));
  EXPECT_EQ(functions, 3);
  EXPECT_EQ(instructions, 1);
  // The count of a push lies behind the stream; bytes that the table lacks are 0.
  EXPECT_FALSE(CheckTrueTypeInstructionStream(&tester, Tova::ByteView(Bytes{0x40, 9}.data(), 1), 1, nullptr, nullptr));
  EXPECT_TRUE(CheckTrueTypeInstructionStream(&tester, bytes.Slice(0, 2), 65535, nullptr, nullptr));
}

TEST(InstructionTesters, WalkGlyphAndTablePrograms) {
  FontBuilder font = OutlineFont({SquareGlyph(9, {0x7B}), Bytes(), SquareGlyph(9, {0xB0}), SquareGlyph(9),
                                  CompoundGlyph({{0x0100, 0}}), SquareGlyph(9, {0x83})});
  font.Table("fpgm", {0x4B, 0x90}).Table("prep", {0xAF});
  ExpectMessages(test::Run(TestInstructions_glyf, font),
                 Major({"glyf: Illegal opcode: 7B", std::string("glyf: ") + kOverrun, "glyf: Illegal opcode: 83"}));
  ExpectMessages(test::Run(TestInstructions_fpgm, font), Major({"fpgm: Illegal opcode: 90"}));
  ExpectMessages(test::Run(TestInstructions_prep, font), Major({"prep: Illegal opcode: AF"}));
  ExpectMessages(test::Run(TestInstructions_glyf, font, {.severities = {"FatalError"}}), {});
  EXPECT_FALSE(test::Run(TestInstructions_fpgm, FontBuilder(font).Truncate("fpgm", 0)).applies);

  // Without messages the first failing program ends the test, so that a later glyph that cannot be read goes unseen.
  font = OutlineFont({SquareGlyph(9, {0x7B}), TableBuilder(SquareGlyph(9)).Truncate(4)});
  EXPECT_EQ(test::Run(TestInstructions_glyf, font, {.messages = false}).severities,
            std::vector<std::string>{"MajorError"});
  EXPECT_EQ(test::Run(TestInstructions_glyf, font).severities, (std::vector<std::string>{"MajorError", "FatalError"}));
}

}  // namespace
