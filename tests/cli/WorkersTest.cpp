#include <gmock/gmock.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "Run/Sandbox.h"
#include "Run/Sanitized.h"
#include "cli/Program.h"
#include "cli/Reports.h"
#include "support/FontBuilder.h"
#include "support/TemporaryFolder.h"

namespace {

using nlohmann::json;
using namespace test;
using namespace testing;

class Workers : public testing::Test {
 protected:
  std::string Font(const std::string& name) const { return folder_.Write(name, GoodFont().Build()); }

  Outcome Run(std::vector<std::string> arguments, const std::string& before = "") const {
    return RunProgram(arguments, test::Destination::kFile, {}, before, TROUBLED_PROGRAM);
  }

  TemporaryFolder folder_;
};

TEST_F(Workers, OneThatGoesWrongCostsItsFileOnly) {
  const struct {
    const char* name;
    const char* kind;
    std::string text;
  } troubles[] = {{"killed.ttf", "crash", "the process that tested it ended: Killed"},
                  {"crash.ttf", "crash", "the process that tested it ended: "},  // a sanitizer makes another end of it
                  {"abort.ttf", "crash", "the process that tested it ended: Aborted"},
                  {"exit.ttf", "crash", "the process that tested it ended: exit status 0"},
                  {"hang.ttf", "timeout", "took longer than 1 s (see --timeout)"},
                  {"closed.ttf", "crash", "the process that tested it ended: "},
                  {"hungry.ttf", "memory", "not enough memory (see --memory)"},
                  {"garbage.ttf", "crash", "the worker process went astray"},
                  {"throws.ttf", "system", "thrown"}};
  std::vector<std::string> arguments = {"-j", "2", "--timeout", "1", "--memory", "256", "-f", "jsonl", "-o"};
  arguments.push_back("text:" + folder_.File("text"));
  for (const auto& trouble : troubles) {
    if (tool::kSanitized && std::string_view(trouble.kind) == "memory") continue;
    arguments.insert(arguments.end(), {Font("good.ttf"), Font(trouble.name)});
  }
  const Outcome outcome = Run(arguments);
  EXPECT_EQ(outcome.status, 3);
  const std::vector<json> lines = JsonLines(outcome);
  const std::string text = Contents(folder_.File("text"));
  size_t at = 0;
  for (const auto& trouble : troubles) {
    if (tool::kSanitized && std::string_view(trouble.kind) == "memory") continue;
    ASSERT_LE(at + 2, lines.size());
    EXPECT_EQ(lines[at]["path"], folder_.File("good.ttf"));
    EXPECT_FALSE(lines[at++].contains("problem"));
    const json& line = lines[at++];
    EXPECT_EQ(line["path"], folder_.File(trouble.name));
    EXPECT_EQ(line["problemKind"], trouble.kind) << trouble.name;
    EXPECT_THAT(line["problem"].get<std::string>(), StartsWith(trouble.text));
    EXPECT_EQ(line["report"], json::parse(R"({"kVornFontTestResultKey": []})"));
    const std::string told = folder_.File(trouble.name) + ": ";
    EXPECT_THAT(text, HasSubstr(told + "not tested, " + trouble.text));
    EXPECT_THAT(outcome.err, HasSubstr("vorn-font-test: " + told + trouble.text));
  }
  EXPECT_EQ(at, lines.size());
  EXPECT_THAT(text, HasSubstr(" files could not be tested\n"));
}

#if !defined(__SANITIZE_ADDRESS__)  // which says so itself
TEST_F(Workers, AFileThatIsCutShortCostsThatFileOnly) {
  const Outcome outcome = Run({"-f", "jsonl", Font("cut.ttf"), Font("good.ttf")});
  EXPECT_EQ(outcome.status, 3);
  ASSERT_EQ(JsonLines(outcome).size(), 2u);
  EXPECT_EQ(JsonLines(outcome)[0]["problem"], "the file was cut short, or could not be read, while it was tested");
}
#endif

TEST_F(Workers, TheOnlyFileOfARunWithoutReportIsTestedAsSafelyHere) {
  if (tool::kSanitized) GTEST_SKIP() << "a worker does it";
  for (const auto& [name, text] : {std::pair("crash.ttf", "the process that tested it ended: Segmentation fault"),
                                   {"abort.ttf", "the process that tested it ended: Aborted"},
                                   {"hang.ttf", "took longer than 1 s (see --timeout)"},
                                   {"hungry.ttf", "not enough memory (see --memory)"},
                                   {"cut.ttf", "the file was cut short, or could not be read, while it was tested"}}) {
    const Outcome outcome = Run({"-q", "--timeout", "1", "--memory", "256", Font(name)});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err, "vorn-font-test: " + folder_.File(name) + ": " + text + "\n");
  }
  if (tool::CanConfineToPlaces()) {
    EXPECT_THAT(Run({"-q", Font("probe.ttf")}).err, HasSubstr("another: Permission denied; "));
  }
}

TEST_F(Workers, CanDoNothingButReadFonts) {
  if (!tool::CanConfineToPlaces()) GTEST_SKIP() << "this system has no Landlock";
  const TemporaryFolder other;
  std::filesystem::create_directory(folder_.File("in"));
  folder_.Write("outside", Bytes(4));
  std::filesystem::rename(Font("probe.ttf"), other.File("target"));
  std::filesystem::create_symlink(other.File("target"), folder_.File("in/probe.ttf"));
  for (const std::string& path : {folder_.File("in"), folder_.File("in/probe.ttf")}) {
    const Outcome outcome = Run({"-f", "jsonl", path});
    EXPECT_EQ(outcome.status, 3);
    const std::string refused = ": Permission denied; ";
    const std::string never = ": Operation not permitted; ";
    EXPECT_EQ(JsonLines(outcome).at(0)["problem"], "this file: done; another" + refused + "beside" + refused + "write" +
                                                       refused + "create" + refused + "remove" + refused + "mode" +
                                                       never + "socket" + never + "local socket" + never + "program" +
                                                       never + "parent" + never);
  }
}

TEST_F(Workers, ReportsAreTheSameForEveryNumberOfThem) {
  std::filesystem::create_directory(folder_.File("fonts"));
  Font("fonts/a");
  for (int i = 0; i < 40; ++i) {
    const std::string name = "fonts/" + std::to_string(i) + ".ttf";
    i % 3 == 0 ? Font(name) : folder_.Write(name, GoodFont().TableCount(static_cast<uint16_t>(i)).Build());
  }
  std::filesystem::rename(folder_.File("fonts/a"), folder_.File("fonts/slow.ttf"));
  folder_.Write("fonts/web.ttf", {'w', 'O', 'F', 'F'});
  std::vector<std::string> before;
  for (const char* jobs : {"0", "1", "2", "7"}) {
    std::vector<std::string> arguments = {"-q", "-j", jobs, "-s", "information"};
    std::vector<std::string> reports;
    for (const std::string format : kAllFormats) {
      arguments.insert(arguments.end(), {"-o", format + ":" + folder_.File(format)});
    }
    arguments.insert(arguments.end(), {folder_.File("fonts/slow.ttf"), folder_.File("none"), folder_.File("fonts")});
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 2) << outcome.err;
    reports.push_back(outcome.err);
    for (const std::string format : kAllFormats) {
      reports.push_back(WithoutTimes(Contents(folder_.File(format))));
    }
    if (before.empty()) before = reports;
    EXPECT_EQ(reports, before) << jobs;
  }
  EXPECT_THAT(before[0], HasSubstr("web.ttf: not supported: a compressed web font (WOFF)\n"));
}

TEST_F(Workers, AFileThatCannotBeTestedHasNoFindings) {
  for (const std::string jobs : {"0", "1"}) {
    if (tool::kSanitized && jobs == "0") continue;  // the search for leaks takes handles, too
    const Outcome outcome = Run({"-j", jobs, "-f", "jsonl", Font("throws.ttf"), Font("nofiles.ttf")});
    EXPECT_EQ(outcome.status, 3);
    ASSERT_EQ(JsonLines(outcome).size(), 2u);
    EXPECT_EQ(JsonLines(outcome)[0]["problem"], "thrown");
    EXPECT_EQ(JsonLines(outcome)[1]["problem"], "Too many open files");
    EXPECT_THAT(outcome.out, Not(HasSubstr("Severity")));
  }
}

}  // namespace
