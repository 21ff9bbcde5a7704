#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>

#include "Run/Progress.h"
#include "cli/Program.h"
#include "cli/Reports.h"
#include "support/FontBuilder.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace test;
using namespace testing;
namespace fs = std::filesystem;

class ManyFiles : public testing::Test {
 protected:
  std::string Font(const std::string& name) const { return folder_.Write(name, GoodFont().Build()); }
  std::string Text(const std::string& name, const std::string& text) const {
    return folder_.Write(name, Bytes(text.begin(), text.end()));
  }
  /// The paths in a report in JSON lines.
  static std::vector<std::string> Paths(const Outcome& outcome) {
    std::vector<std::string> paths;
    for (const auto& line : JsonLines(outcome)) paths.push_back(line["path"]);
    return paths;
  }

  TemporaryFolder folder_;
};

TEST_F(ManyFiles, ListsNameFilesAndFolders) {
  fs::create_directories(folder_.File("in/deep"));
  const std::string a = Font("a.ttf");
  const std::string odd = Font("odd\n.ttf");
  const std::string deep = Font("in/deep/font.ttf");
  const std::string lines = Text("lines", a + "\n\n" + folder_.File("in") + "\n" + a);
  const std::string nulls = Text("nulls", odd + std::string(1, '\0') + deep + std::string(1, '\0'));
  EXPECT_THAT(Paths(RunProgram({"-f", "jsonl", "--files-from", lines, odd})), ElementsAre(odd, a, deep, a));
  EXPECT_THAT(
      Paths(RunProgram({"-f", "jsonl", "-0", "--files-from", "-"}, Destination::kFile, {}, "cat '" + nulls + "' |")),
      ElementsAre(odd, deep));
  EXPECT_EQ(RunProgram({"--files-from", folder_.File("none")}).status, 2);
  EXPECT_EQ(RunProgram({"--files-from", folder_.Path()}).status, 2);
  EXPECT_EQ(RunProgram({"--files-from", Text("empty", "\n")}).status, 2);
  EXPECT_THAT(RunProgram({"--files-from", nulls}).err, HasSubstr("NULs in a path; try -0"));
  EXPECT_THAT(RunProgram({"--files-from", "/dev/zero"}).err, HasSubstr("a path is too long"));
}

TEST_F(ManyFiles, FilesOfManyFoldersAndBehindLinksAreReadByWorkers) {
  std::string lists[2];
  std::vector<std::string> paths;
  for (int i = 0; i < 40; ++i) {
    const std::string name = std::to_string(i);
    const bool isLink = i % 5 == 0;
    for (const std::string& folder : {name, name + "-linked"}) fs::create_directories(folder_.File(folder));
    Font(isLink ? name + "-linked/target" : name + "/font.ttf");
    paths.push_back(folder_.File(name + "/font.ttf"));
    if (isLink) fs::create_symlink("../" + name + "-linked/target", paths.back());
    lists[i / 20] += paths.back() + "\n";
  }
  const std::string before = "(cat '" + Text("a", lists[0]) + "'; sleep 0.5; cat '" + Text("b", lists[1]) + "') |";
  const Outcome outcome =
      RunProgram({"-j", "3", "-f", "jsonl", "-r", "results", "--files-from", "-"}, Destination::kFile, {}, before);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(Paths(outcome), paths);
}

TEST_F(ManyFiles, WhatCannotBeTestedIsNamed) {
  fs::create_directories(folder_.File("none/deep"));
  fs::create_directories(folder_.File("web"));
  Text("none/notes.txt", "no font");
  const std::string none = folder_.File("none");
  const std::string web = Text("web/a.woff2", "wOF2 and more");
  for (const auto& [path, reason] : {std::pair(none, none + ": no font files in this folder"),
                                     {folder_.File("web"), web + ": not supported: a compressed web font (WOFF2)"},
                                     {web, web + ": not supported: a compressed web font (WOFF2)"}}) {
    const Outcome outcome = RunProgram({"-f", "jsonl", path, Font("good.ttf"), path});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(Lines(outcome.err), Each("vorn-font-test: " + reason));
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("\"report\":{\"kVornFontTestResultKey\":[]}"), HasSubstr("good.ttf")));
    EXPECT_THAT(RunProgram({"-f", "json", path}).out, Not(HasSubstr("\"path\"")))
        << "other reports list what was tested";
  }
}

TEST_F(ManyFiles, AReportReplacesAFileWhenItIsWhole) {
  const std::string good = Font("good.ttf");
  const std::string report = Text("report", "what was there");
  EXPECT_EQ(RunProgram({"-o", report, "-j", "0", good, Font("interrupt.ttf"), good}, Destination::kFile, {}, "",
                       TROUBLED_PROGRAM)
                .status,
            130);
  EXPECT_EQ(RunProgram({"-o", report, "-o", "json:/dev/full", good}).status, 3);
  EXPECT_EQ(Contents(report), "what was there");

  fs::create_directories(folder_.File("fonts"));
  const std::string font = Font("fonts/b.ttf");
  fs::create_symlink("fonts/b.ttf", folder_.File("link"));
  for (const std::string& output : {font, folder_.File("link")}) {
    Font("fonts/a.ttf");
    const Outcome refused = RunProgram({"-o", output, folder_.File("fonts")});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.err, HasSubstr("is one of the files to test"));
    EXPECT_EQ(fs::file_size(font), GoodFont().Build().size());
  }

  fs::create_symlink("report", folder_.File("to-report"));
  fs::create_symlink("new", folder_.File("to-new"));
  for (const char* name : {"report", "to-report", "to-new"}) {
    EXPECT_EQ(RunProgram({"-o", folder_.File(name), good}, Destination::kFile, {}, "umask 027;").status, 0);
    EXPECT_THAT(Contents(folder_.File(name)), HasSubstr("PASS, "));
  }
  EXPECT_TRUE(fs::is_symlink(folder_.File("to-report")));
  EXPECT_EQ(fs::status(folder_.File("new")).permissions(), fs::perms(0640));
  EXPECT_THAT(RunProgram({"-o", "/dev/stdout", good}).out, HasSubstr("PASS, "));
  for (const auto& entry : fs::directory_iterator(folder_.Path())) {
    EXPECT_FALSE(entry.path().filename().string().starts_with(".")) << entry;
  }
}

/// Starts the program over files that may hang, has it told to end once it wrote the report of the first file, and
/// returns its exit status.
int StatusAfterSignal(int signal, const char* jobs, const std::string& first, const std::string& second) {
  std::array<int, 2> ends = {};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return -1;
  prctl(PR_SET_CHILD_SUBREAPER, 1);  // what the program leaves behind becomes a child of this process
  const pid_t program = fork();
  if (program == 0) {
    dup2(ends[1], STDOUT_FILENO);
    execl(TROUBLED_PROGRAM, TROUBLED_PROGRAM, "-j", jobs, "-f", "jsonl", first.c_str(), second.c_str(), nullptr);
    _exit(127);
  }
  close(ends[1]);
  char byte = 0;
  while (read(ends[0], &byte, 1) == 1 && byte != '\n') continue;
  kill(program, signal);
  int status = 0;
  waitpid(program, &status, 0);
  close(ends[0]);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

TEST_F(ManyFiles, SignalsEndTheRunAndItsWorkers) {
  const std::string first = Font("good.ttf");
  const std::string second = Font("hang.ttf");
  using Case = std::tuple<int, const char*, int>;
  for (const auto& [signal, jobs, status] :
       {Case(SIGINT, "2", 130), Case(SIGTERM, "2", 143), Case(SIGKILL, "2", -SIGKILL), Case(SIGINT, "0", 130)}) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(StatusAfterSignal(signal, jobs, first, second), status);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, signal == SIGKILL ? "" : "vorn-font-test: interrupted: 1 file done, with 4 findings\n");
    while (waitpid(-1, nullptr, 0) > 0) continue;  // which would last for ever with one that goes on
    EXPECT_EQ(errno, ECHILD);
  }
}

TEST(ProgressText, TellsHowFarTheRunIs) {
  using tool::ProgressLine;
  EXPECT_EQ(ProgressLine({.done = 12, .total = 40, .seconds = 2.4, .path = "fonts/a.ttf"}, 80),
            "12/40 files, 5.0/s, 0:06 left, fonts/a.ttf");
  EXPECT_EQ(ProgressLine({.done = 0, .total = std::nullopt, .seconds = 1, .path = "a\x1b"}, 80), "0 files, a\\x1b");
  EXPECT_EQ(ProgressLine({.done = 9000, .total = 4'000'000, .seconds = 30, .path = "very/long/\xC3\xA4.ttf"}, 50),
            "9000/4000000 files, 300/s, 221:43 left, long/\xC3\xA4.ttf");
  EXPECT_EQ(ProgressLine({.done = 9000, .total = 4'000'000, .seconds = 30, .path = "a"}, 10), "9000/40000");
}

TEST_F(ManyFiles, ProgressIsShownOnATerminalOnly) {
  const std::string slow = Font("hang.ttf");
  const auto run = [&](Destination destination, std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--timeout", "2", slow});
    const Outcome outcome = RunProgram(arguments, destination, {}, "", TROUBLED_PROGRAM);
    return outcome.out + outcome.err;
  };
  EXPECT_THAT(run(Destination::kTerminals, {}), ContainsRegex("\r\x1b\\[K0/1 files, .*/hang.ttf\r\x1b\\[K"));
  EXPECT_THAT(run(Destination::kTerminals, {"--no-progress"}), Not(HasSubstr("0/1")));
  EXPECT_THAT(run(Destination::kFile, {}), Not(HasSubstr("0/1")));
}

TEST_F(ManyFiles, PartsMakeTheReportThatOneRunWouldMake) {
  const std::string broken = folder_.Write("broken.ttf", GoodFont().TableCount(3).Build());
  const std::string odd = Font("odd\n\"\xE2\x80\xAE.ttf");
  const std::string none = folder_.File("none.ttf");
  const std::vector<std::vector<std::string>> parts = {{Font("good.ttf"), broken}, {none}, {odd, folder_.Path()}};
  std::vector<std::string> merge = {"--merge", "-s", "information"};
  std::vector<std::string> all = {"-s", "information"};
  for (const auto& files : parts) {
    std::vector<std::string> arguments = {"-f", "jsonl", "-o", folder_.File("part" + std::to_string(merge.size()))};
    merge.push_back(arguments.back());
    arguments.insert(arguments.end(), files.begin(), files.end());
    if (files == parts.back()) arguments.pop_back();
    RunProgram(arguments);
    all.insert(all.end(), arguments.begin() + 4, arguments.end());
  }
  merge.push_back(merge.back());  // what is there twice counts once
  for (const std::string format : kAllFormats) {
    const auto in = [&format](std::vector<std::string> arguments) {
      arguments.insert(arguments.end(), {"-f", format});
      const Outcome outcome = RunProgram(arguments);
      return std::tuple(outcome.status, WithoutTimes(outcome.out), outcome.err);
    };
    EXPECT_EQ(in(merge), in(all));
  }
}

TEST_F(ManyFiles, MergingTakesTheBestReportOfAFile) {
  const std::string good = R"({"path":"a.ttf","report":{"kVornFontTestResultKey":[]}})";
  const std::string fatal =
      R"({"path":"b.ttf","report":{"kVornFontTestResultKey":["kVornFontTestSeverityFatalError"],"own":[{"x":1}]}})";
  const std::string crashed =
      R"({"path":"a.ttf","problem":"crashed","problemKind":"crash","report":{"kVornFontTestResultKey":[]}})";
  const auto unnamed = [](std::string line) { return line.replace(line.find(".ttf") - 1, 5, "\xEF\xBF\xBD"); };
  const struct {
    std::string first, second;
    int status;
    std::vector<std::string> paths;
    std::string error;
  } cases[] = {{crashed, good, 0, {"a.ttf"}, ""},
               {good + "\n", crashed, 0, {"a.ttf"}, ""},
               {good + "\n" + good, fatal + "\n" + good, 1, {"a.ttf", "b.ttf"}, ""},
               {unnamed(good), unnamed(good) + "\n" + unnamed(fatal), 1, {2, "\xEF\xBF\xBD"}, ""},
               {crashed, fatal, 3, {"a.ttf", "b.ttf"}, "a.ttf: crashed"},
               {good.substr(0, 40), good, 0, {"a.ttf"}, ""},
               {good.substr(0, 40), fatal, 3, {"a.ttf", "b.ttf"}, "a.ttf: its report was cut short"},
               {good.substr(0, 9) + "\n[]\n", good, 2, {}, "first:2: this line is no report of a file"}};
  for (const auto& run : cases) {
    const Outcome outcome =
        RunProgram({"--merge", "-f", "jsonl", Text("first", run.first), Text("second", run.second)});
    EXPECT_EQ(outcome.status, run.status) << run.first << outcome.err;
    EXPECT_TRUE(run.paths.empty() || Paths(outcome) == run.paths) << outcome.out;
    EXPECT_THAT(outcome.err, HasSubstr(run.error));
    EXPECT_THAT(outcome.out, Not(HasSubstr("own")));
  }
  const std::string part = Text("part", good);
  EXPECT_EQ(RunProgram({"--merge", "-o", part, part}).status, 2);
  EXPECT_EQ(RunProgram({"--merge", folder_.File("none")}).status, 2);
  EXPECT_EQ(Contents(part), good);
  std::string deep = R"({"path":"a","report":)";
  for (int i = 0; i < 100'000; ++i) deep += '[';
  EXPECT_EQ(RunProgram({"--merge", Text("deep", deep)}).status, 3);
}

}  // namespace
