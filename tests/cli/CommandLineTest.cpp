#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli/Program.h"
#include "cli/Reports.h"
#include "support/FontBuilder.h"
#include "support/SuitcaseBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/Values.h"

namespace {

using nlohmann::json;
using namespace test;
using namespace testing;

constexpr const char* kTrueTypeTest = "veltrin.TrueType.usability";
constexpr const char* kType1Test = "veltrin.Type1.usability";

/// A folder with a good font and a text file that is none.
class CommandLine : public testing::Test {
 protected:
  std::string Good() const { return folder_.Write("good.ttf", GoodFont().Build()); }
  std::string NoFont() const { return folder_.Write("notes.txt", Bytes(40, 'n')); }
  std::string Missing() const { return folder_.File("missing.ttf"); }

  /// The files reported for these arguments, relative to the folder.
  std::vector<std::string> Reported(std::vector<std::string> arguments, int status) const {
    arguments.insert(arguments.end(), {"-f", "jsonl", "-t", kTrueTypeTest});
    const Outcome outcome = RunProgram(arguments);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    std::vector<std::string> files;
    for (const json& line : JsonLines(outcome)) {
      files.push_back(std::filesystem::path(line["path"].get<std::string>()).lexically_relative(folder_.Path()));
    }
    return files;
  }

  TemporaryFolder folder_;
};

std::vector<std::string> ListedTests(std::vector<std::string> arguments) {
  arguments.insert(arguments.end(), {"--list-tests", "--format", "jsonl"});
  const Outcome outcome = RunProgram(arguments);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  std::vector<std::string> identifiers;
  for (const json& test : JsonLines(outcome)) identifiers.push_back(test["kVornFontTestIdentifierKey"]);
  return identifiers;
}

TEST(TestSelection, RunsInTheOrderGivenAndGlobsAscending) {
  const std::vector<std::string> all = ListedTests({});
  EXPECT_TRUE(std::ranges::is_sorted(all));
  EXPECT_EQ(ListedTests({"-T", "usability", "-T", "all"}), all);

  std::vector<std::string> type1First = all;
  std::stable_partition(type1First.begin(), type1First.end(),
                        [](const std::string& test) { return test == kType1Test; });
  EXPECT_EQ(ListedTests({"-t", kType1Test, "-t", "*"}), type1First);
  EXPECT_THAT(ListedTests({"-t", "OS/2", "-t", "EBLC", "-t", "loca"}),
              ElementsAre("veltrin.TrueType.OS_2.structure", "veltrin.TrueType.sbit.structure",
                          "veltrin.TrueType.loca.usability"));
  EXPECT_THAT(ListedTests({"-t", "*.usability", "-x", "*.*.*.*", "-x", "*Type1*"}), ElementsAre(kTrueTypeTest));
  EXPECT_THAT(ListedTests({"-T", "usability", "-t", "veltrin.T[ry]*e*.usability", "-x", "*.TrueType.?*.*"}),
              ElementsAre(kTrueTypeTest, kType1Test));
}

TEST(Usage, ErrorsAreNamedAndExitWith2) {
  const struct {
    std::vector<std::string> arguments;
    std::string message;
  } cases[] = {{{}, "no font file or directory given"},
               {{"--bogus", "a"}, "unknown option --bogus"},
               {{"--show", "dire", "a"}, "--show: 'dire' is none of information, technical, minor, major, fatal"},
               {{"a", "--format"}, "--format needs a value"},
               {{"-t", "*.cmap.nonsense", "a"}, "no test matches '*.cmap.nonsense'"},
               {{"-x", "veltrin.nothing", "a"}, "--exclude: no test matches 'veltrin.nothing'"},
               {{"-T", "unexpected-value", "a"}, "--type: 'unexpected-value' is none of core, structure"},
               {{"--language", "../de", "a"}, "'../de' is no language tag"},
               {{"-T", "consistency", "-t", kType1Test, "a"}, "no test of the wanted types matches"},
               {{"-x", "*", "a"}, "no tests remain"}};
  for (const auto& usage : cases) {
    const Outcome outcome = RunProgram(usage.arguments);
    EXPECT_EQ(outcome.status, 2) << usage.message;
    EXPECT_THAT(outcome.err, HasSubstr(usage.message));
    EXPECT_THAT(outcome.out, IsEmpty());
  }
}

TEST(Usage, HelpAndVersionAnswer) {
  EXPECT_EQ(RunProgram({"--version"}).out, "vorn-font-test 1.0.0\n");
  const Outcome help = RunProgram({"-o", "ignored", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, AllOf(HasSubstr("Usage: vorn-font-test"), HasSubstr("Exit status:")));
}

TEST_F(CommandLine, ExitStatusSaysWhatWasFound) {
  const struct {
    std::vector<std::string> arguments;
    int status;
  } cases[] = {{{Good()}, 0},
               {{NoFont()}, 1},
               {{"--fail-on", "fatal", Good(), NoFont()}, 1},
               {{"--fail-on", "never", NoFont()}, 0},
               {{Missing(), Good()}, 2},
               {{NoFont(), Missing()}, 2}};
  for (const auto& run : cases) EXPECT_EQ(RunProgram(run.arguments).status, run.status) << PrintToString(run.arguments);
}

TEST_F(CommandLine, RulesOfOlderSystemsCountInTheStrictProfileOnly) {
  const TableBuilder zones = MaxpTable(3).Patch("maxZones", 1);
  const std::string historic = folder_.Write("old.ttf", GoodFont().Table("maxp", zones).Build());
  const std::string sound = folder_.Write(
      "both.ttf", GoodFont().Table("maxp", TableBuilder(zones).Patch("maxSizeOfInstructions", 9)).Build());
  const std::vector<std::vector<std::string>> ways = {{}, {"-q"}, {"-r", "results"}, {"--max-messages", "1"}};
  for (std::vector<std::string> way : ways) {
    way.insert(way.end(), {"-t", "*.maxp.*", "--fail-on", "minor"});
    const auto status = [&](std::vector<std::string> more) {
      more.insert(more.end(), way.begin(), way.end());
      return RunProgram(more).status;
    };
    EXPECT_EQ(status({historic}), 0) << PrintToString(way);
    EXPECT_EQ(status({"--profile", "strict", historic}), 1) << PrintToString(way);
    EXPECT_EQ(status({sound}), 1) << "what is left out, or behind a limit, counts: " << PrintToString(way);
  }
  for (const auto& [profile, standing] : {std::pair("default", json("historic")), {"strict", json()}}) {
    const auto lines = JsonLines(RunProgram({"-f", "jsonl", "-t", "*.maxp.*", "--profile", profile, historic}));
    const json test = lines[0]["report"]["kVornFontTestFontsTestedKey"][0]["kVornFontTestArrayKey"][0];
    const json& message = test["kVornFontTestMessagesKey"].back();
    EXPECT_EQ(message["rule"], "maxp/zones-not-two");
    EXPECT_EQ(message["state"], "historic");
    EXPECT_EQ(message.value("standing", json()), standing);
    EXPECT_THAT(lines[0]["report"]["kVornFontTestFontsTestedKey"][0]["tablesNotTested"],
                ElementsAre("cmap", "glyf", "head", "hhea", "hmtx", "loca", "name", "OS/2", "post"));
  }
}

TEST(Samples, AreGoodOrHaveFindingsOfEverySeverity) {
  const std::string folder = SAMPLES_FOLDER;
  EXPECT_EQ(RunProgram({"--fail-on", "technical", folder + "/Good.ttf", folder + "/Collection.ttc"}).status, 0);
  EXPECT_THAT(RunProgram({"-s", "information", folder + "/Broken.ttf"}).out,
              ContainsRegex("\n FAIL .* fatal  .* major  .* minor  .* technical  .* information[\n ]+in "));
}

TEST_F(CommandLine, UnreadablePathsAreNamedAndTheOthersDone) {
  const std::string fifo = folder_.File("fifo.ttf");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const Outcome outcome = RunProgram({Missing(), fifo, "", Good()});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(Lines(outcome.err), ElementsAre("vorn-font-test: " + Missing() + ": No such file or directory",
                                              "vorn-font-test: " + fifo + ": Not a regular file",
                                              "vorn-font-test: : No such file or directory"));
  EXPECT_THAT(outcome.out, HasSubstr(Good() + "   Good Regular, Version 1.0\n"));
  EXPECT_THAT(outcome.out, HasSubstr("3 paths could not be read"));
}

TEST_F(CommandLine, WhatTheLibrarySaysNamesTheFileUnlessQuietIsWanted) {
  const std::string path = folder_.Write("odd\x1b.ttf", GoodFont().TableCount(5000).Build());
  const Outcome outcome = RunProgram({"-t", kTrueTypeTest, path});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, StartsWith("vorn-font-test: " + folder_.File("odd\\x1b.ttf") + ": FTException: Error -1 ("));
  EXPECT_THAT(RunProgram({"-q", path}).err, IsEmpty());
}

TEST_F(CommandLine, PathsMayBeAsLongAsTheSystemAllows) {
  namespace fs = std::filesystem;
  fs::path deep = folder_.Path();
  while (deep.native().size() < 1100) deep /= std::string(200, 'd');
  fs::create_directories(deep);
  fs::copy_file(Good(), deep / "good.ttf");
  EXPECT_EQ(RunProgram({deep / "good.ttf"}).status, 0);
  EXPECT_THAT(RunProgram({folder_.File(std::string(5000, 'x'))}).status, 2);
  if (geteuid() == 0) return;  // who may read anything
  fs::permissions(deep / "good.ttf", fs::perms::none);
  EXPECT_THAT(RunProgram({deep / "good.ttf"}).status, 2);
}

TEST_F(CommandLine, DirectoriesAreSearchedForFontsInOrder) {
  namespace fs = std::filesystem;
  const Bytes font = GoodFont().Build();
  fs::create_directories(folder_.Path() / "[b]" / "deep");
  NoFont();
  for (const char* name : {"c.ttf", "a.otf", "[b]/deep/x.ttf", "[b]/y"}) folder_.Write(name, font);
  folder_.Write("d.sfont", Bytes(12, 'd'));
  folder_.Write("empty.ttf", {});
  fs::create_directory_symlink(folder_.Path(), folder_.Path() / "[b]" / "loop");
  fs::create_symlink("c.ttf", folder_.Path() / "link");
  ASSERT_EQ(mkfifo(folder_.File("fifo").c_str(), 0600), 0);

  const std::string top = folder_.Path().string();
  EXPECT_THAT(Reported({top, "--fail-on", "never"}, 0),
              ElementsAre("[b]/deep/x.ttf", "[b]/y", "a.otf", "c.ttf", "d.sfont", "link"));
  EXPECT_THAT(Reported({folder_.File("[b]") + "/", "--fail-on", "never"}, 0).front(), "[b]/deep/x.ttf");
  EXPECT_THAT(Reported({folder_.File("notes.txt"), folder_.File("empty.ttf")}, 1),
              ElementsAre("notes.txt", "empty.ttf"));
}

TEST_F(CommandLine, SuitcasesAreFoundAndSidecarsAreNot) {
  const Bytes fonts = SuitcaseBuilder().Add("sfnt", 128, GoodFont().Build()).Build();
  const Bytes icons = SuitcaseBuilder().Add("ICN#", 128, Bytes(9)).Build();
  const std::vector<std::pair<const char*, Bytes>> files = {{"datafork", fonts},
                                                            {"one", OneFile({}, fonts)},
                                                            {"header", HeaderForm({}, fonts, "FFIL")},
                                                            {"beside", {}},
                                                            {"._beside", Sidecar(fonts)},
                                                            {"picture", Bytes(100, 'p')},
                                                            {"._picture", Sidecar(icons)},
                                                            {"icons", OneFile({}, icons)},
                                                            {"._alone", Sidecar(fonts)}};
  for (const auto& [name, bytes] : files) folder_.Write(name, bytes);
  EXPECT_THAT(Reported({folder_.Path(), "--fail-on", "never"}, 0), ElementsAre("beside", "datafork", "header", "one"));
}

TEST_F(CommandLine, WritesValidJsonAndPropertyLists) {
  const std::string odd = folder_.Write("odd\n\xFF.ttf", GoodFont().Build());
  const Outcome outcome = RunProgram({"-f", "json", odd, Missing(), NoFont()});
  EXPECT_EQ(outcome.status, 2);
  const json files = json::parse(outcome.out)["files"];
  ASSERT_EQ(files.size(), 2u);
  EXPECT_THAT(files[0]["path"].get<std::string>(), EndsWith("odd\n\xEF\xBF\xBD.ttf"));
  EXPECT_THAT(files[0]["pathBytes"].get<std::string>(), EndsWith("/odd%0A%FF.ttf"));
  const std::string part = folder_.File("part.jsonl");
  RunProgram({"-q", "-f", "jsonl", "-o", part, odd, NoFont()});
  EXPECT_EQ(RunProgram({"--merge", "-f", "json", "--no-times", part}).out,
            RunProgram({"-f", "json", "--no-times", odd, NoFont()}).out);
  const json& font = files[0]["report"]["kVornFontTestFontsTestedKey"][0];
  EXPECT_EQ(font["kVornFontTestFontPostScriptNameKey"], "Good-Regular");
  EXPECT_THAT(font["kVornFontTestArrayKey"][0]["kVornFontTestTimeStampKey"].get<std::string>(),
              MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z"));
  EXPECT_EQ(files[1]["report"]["kVornFontTestResultKey"], json({"kVornFontTestSeverityFatalError"}));

  const auto lines = JsonLines(RunProgram({"-f", "jsonl", "-r", "summary", Good(), NoFont()}));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0]["path"], Good());
  EXPECT_EQ(lines[1]["report"]["kVornFontTestCreateReportTypeKey"], "kVornFontTestReportTypeSummary");

  const std::string text = RunProgram({"-f", "plist", Good(), NoFont()}).out;
  const auto data = Tova::Adopt(TovaDataCreate(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
  const auto list = Tova::Adopt(TovaPropertyListCreateWithData(data.get(), nullptr));
  EXPECT_THAT(Description(list.get()), AllOf(HasSubstr("{path: " + Good()), HasSubstr("{path: " + NoFont())));
  EXPECT_THAT(text, HasSubstr("<date>"));
}

TEST_F(CommandLine, MessagesAreInTheLanguageWanted) {
  const std::string path =
      folder_.Write("zones.ttf", GoodFont().Table("maxp", MaxpTable(3).Patch("maxZones", 1)).Build());
  const auto text = [&](std::vector<std::string> options) {
    options.insert(options.end(), {"-t", "maxp", "--profile", "strict", path});
    return RunProgram(options).out;
  };
  EXPECT_THAT(text({}), HasSubstr("maxZones is 1; 2 serves every font"));
  EXPECT_EQ(text({"--language", "xx-YY"}), text({}));
  EXPECT_THAT(text({"--language", "none"}), HasSubstr("The maxZones field is equal to 1; it should be equal to 2"));
}

TEST_F(CommandLine, NamesCannotDriveTheTerminal) {
  const std::string path = folder_.Write("a\x1b[2J\xE2\x80\xAE.ttf",
                                         GoodFont().Table("name", NameTable({{4, "E\x1b[1mvil\x07\x9b"}})).Build());
  const Outcome text = RunProgram({path});
  EXPECT_THAT(text.out, AllOf(HasSubstr("a\\x1b[2J\\u202e.ttf "), HasSubstr(" E\\x1b[1mvil\\x07\\u009b\n")));
  EXPECT_THAT(text.out, Not(HasSubstr("\x1b")));
  const Outcome lines = RunProgram({"-f", "jsonl", path});
  EXPECT_THAT(lines.out, HasSubstr("E\\u001b[1mvil\\u0007\\u009b"));
  EXPECT_EQ(JsonLines(lines)[0]["path"], path);
}

TEST_F(CommandLine, ColorsOnlyWhereTheyAreWanted) {
  const auto colored = [](const std::string& text) { return text.find("\x1b[") != std::string::npos; };
  const std::string font = Good();
  EXPECT_TRUE(colored(RunProgram({font}, Destination::kTerminal).out));
  EXPECT_FALSE(colored(RunProgram({font}, Destination::kTerminal, {"NO_COLOR=1"}).out));
  EXPECT_TRUE(colored(RunProgram({font}, Destination::kTerminal, {"NO_COLOR="}).out));
  EXPECT_FALSE(colored(RunProgram({font}).out));
  EXPECT_TRUE(colored(RunProgram({font, "--color=always"}, Destination::kFile, {"NO_COLOR=1"}).out));
}

TEST_F(CommandLine, ReportsGoWhereTheyAreSent) {
  const std::string report = folder_.Write("report.json", Bytes(100'000, 'x'));
  EXPECT_THAT(RunProgram({"-q", NoFont()}).out, IsEmpty());
  const Outcome outcome = RunProgram({"-q", "-f", "json", "-o", report, Good()});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out + outcome.err, IsEmpty());
  std::ifstream file(report);
  EXPECT_EQ(json::parse(file)["files"].size(), 1u);

  const Outcome refused = RunProgram({"-o", Good(), Good()});
  EXPECT_EQ(refused.status, 2);
  EXPECT_THAT(refused.err, HasSubstr("is one of the files to test"));
  EXPECT_GT(std::filesystem::file_size(folder_.File("good.ttf")), 100u);
}

TEST_F(CommandLine, ReportsThatCannotBeWrittenFailTheRun) {
  constexpr const char* kStart = "vorn-font-test: standard output: ";
  for (const auto& [destination, status, message] :
       {std::tuple(Destination::kFull, 3, kStart + std::string("No space left on device")),
        {Destination::kClosed, 3, kStart + std::string("Bad file descriptor")},
        {Destination::kClosedPipe, 141, std::string()}}) {  // the reader is gone: no use in saying anything
    for (const char* format : {"text", "json", "jsonl", "plist"}) {
      const Outcome outcome = RunProgram({"-f", format, Good(), Missing()}, destination);
      EXPECT_EQ(outcome.status, status) << format;
      EXPECT_THAT(outcome.err, HasSubstr(message)) << format;
    }
    EXPECT_EQ(RunProgram({"--help"}, destination).status, status);
  }
  EXPECT_EQ(RunProgram({"-o", "/dev/full", Good()}).status, 3);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // which take address space without end
TEST_F(CommandLine, TooLittleMemoryFailsTheFileOrTheRun) {
  const std::string path = folder_.Write("many.ttc", test::BuildCollection(std::vector(5'000, test::GoodFont())));
  for (const auto& [jobs, file] : {std::pair("0", std::string()), {"1", path + ": "}}) {
    const Outcome outcome = RunProgram({"-f", "json", "-o", folder_.File("report"), "-j", jobs, path},
                                       Destination::kFile, {}, "ulimit -v 32000;");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, StartsWith("vorn-font-test: " + file + "not enough memory"));
    std::filesystem::remove(folder_.File("report"));
    const std::filesystem::directory_iterator files(folder_.Path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "nothing is left behind";
  }
}

TEST_F(CommandLine, TablesOfOneFontAtATimeAreKeptInMemory) {
  const Bytes names = NameTable(std::vector(20'000, std::pair<uint16_t, std::string>(4, "n")));  // a megabyte when read
  const std::string path =
      folder_.Write("names.ttc", BuildCollection(std::vector(100, GoodFont().Table("name", names))));
  EXPECT_EQ(RunProgram({"--fail-on", "never", path}, Destination::kFile, {}, "ulimit -v 96000;").status, 0);
}
#endif

}  // namespace
