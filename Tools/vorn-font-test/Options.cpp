#include "Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

#include "Report/Configuration.h"

namespace tool {
namespace {

constexpr const char* kDescription =
    "Validates font files: runs tests over every font of the given files and reports what is wrong with them.";

constexpr const char* kFooter = R"(Exit status:
  0  nothing was found at the --fail-on level or above
  1  something was found
  2  wrong usage, or a file that cannot be read (all others are still tested)
  3  a file could not be tested (a crash, --timeout, --memory), or the program
     itself failed: the report cannot be written, for instance
  130, 143  interrupted; 141  nobody reads the report any more

Examples:
  vorn-font-test MyFont.ttf                    what is wrong with a font
  vorn-font-test -s major ~/fonts              all fonts under a directory, grave errors only
  vorn-font-test -t '*.cmap.*' MyFont.ttf      only the tests of the 'cmap' table
  vorn-font-test -f jsonl -o report.jsonl dir  a report for programs, one line a file
  find . -name '*.ttf' -print0 | vorn-font-test -0 --files-from -
  vorn-font-test -q --fail-on fatal a.ttf      no report, only the exit status)";

constexpr size_t kMaximumJobs = 1024;
constexpr uint64_t kMaximumTimeout = 1'000'000;     // seconds
constexpr uint64_t kMaximumMemory = 1'000'000'000;  // megabytes

template <class T>
using Choices = std::vector<std::pair<std::string_view, T>>;

const Choices<Severity> kLevels = {{"information", Severity::kInformation},
                                   {"technical", Severity::kTechnical},
                                   {"minor", Severity::kMinor},
                                   {"major", Severity::kMajor},
                                   {"fatal", Severity::kFatal}};

const Choices<Format> kFormats = {
    {"text", Format::kText},          {"json", Format::kJson},         {"jsonl", Format::kJsonLines},
    {"plist", Format::kPropertyList}, {"sarif", Format::kSarif},       {"junit", Format::kJUnit},
    {"github", Format::kGithub},      {"markdown", Format::kMarkdown}, {"html", Format::kHtml}};

/// What the word stands for.
template <class T>
const T& Choose(const Choices<T>& choices, const std::string& option, const std::string& word) {
  std::string words;
  for (const auto& [choice, value] : choices) {
    if (choice == word) return value;
    words.append(words.empty() ? "" : ", ").append(choice);
  }
  throw UsageError(option + ": '" + word + "' is none of " + words);
}

/// Accepts one of the words and puts what it stands for into target; the last one counts.
template <class T>
CLI::Option* AddChoice(CLI::App& app, const std::string& names, T& target, const Choices<T>& choices,
                       const std::string& help) {
  const std::string name = names.substr(names.find("--"));
  return app
      .add_option_function<std::string>(
          names, [&target, &choices, name](const std::string& word) { target = Choose(choices, name, word); }, help)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

/// An option that may be given several times, with one value each time.
CLI::Option* AddRepeatable(CLI::App& app, const std::string& names, std::vector<std::string>& target,
                           const std::string& help) {
  return app.add_option(names, target, help)->expected(1)->allow_extra_args(false)->take_all();
}

/// A language tag in the form of locales: "de_AT" for "de-AT".
std::string LanguageFrom(std::string tag) {
  const auto isPart = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; };
  std::ranges::replace(tag, '-', '_');
  if (tag.empty() || !std::ranges::all_of(tag, isPart))
    throw UsageError("--language: '" + tag + "' is no language tag");
  return tag;
}

void AddTestOptions(CLI::App& app, Options& options) {
  const char* group = "Which tests run";
  AddRepeatable(app, "-t,--test", options.tests,
                "Run this test, or those a glob matches, such as '*.cmap.*',\n"
                "or those of a table by its tag, such as cmap. Repeatable;\n"
                "tests run in the order given. Default: all.")
      ->option_text("ID")
      ->group(group);
  AddRepeatable(app, "-x,--exclude", options.excludes, "Leave out this test, or those a glob or a tag matches.")
      ->option_text("ID")
      ->group(group);
  AddRepeatable(app, "-T,--type", options.types,
                "Only tests of this type: core, structure, consistency,\n"
                "usability or all. Repeatable. Default: all.")
      ->option_text("TYPE")
      ->group(group);
  AddChoice(app, "--enable", options.enable, kLevels,
            "Look only for findings of this level and above; tests may\n"
            "then skip costly milder checks. Default: information.")
      ->option_text("LEVEL")
      ->group(group);
  app.add_flag("--duplicates", options.duplicates,
               "Also ask whether another font of the same PostScript name\n"
               "is installed (veltrin.duplicates), of a running\n"
               "rundle-conduit or of one started for this run.")
      ->group(group);
  app.add_flag("--list-tests", options.listTests, "List the tests that would run, and run none.")->group(group);
}

void AddReportOptions(CLI::App& app, Options& options, std::vector<std::string>& outputs) {
  static const Choices<Detail> kDetails = {
      {"results", Detail::kResults}, {"summary", Detail::kSummary}, {"full", Detail::kFull}};
  static const Choices<ColorMode> kColors = {
      {"auto", ColorMode::kAuto}, {"always", ColorMode::kAlways}, {"never", ColorMode::kNever}};
  const char* group = "What the report holds";
  AddChoice(app, "-s,--show", options.show, kLevels,
            "Lowest level whose findings reports for people show one by\n"
            "one: information (and which tables were tested), technical,\n"
            "minor, major or fatal. Default: minor.")
      ->option_text("LEVEL")
      ->group(group);
  AddChoice(app, "-r,--report", options.detail, kDetails,
            "results: the levels found in each file; summary: in each\n"
            "test of each font; full: all messages. Default: full.\n"
            "Below full, a test may stop at its first finding.")
      ->option_text("DETAIL")
      ->group(group);
  AddChoice(app, "-f,--format", options.format, kFormats,
            "text; json: one document; jsonl: one line a file, as it\n"
            "ends; plist: an XML property list; sarif: SARIF 2.1.0;\n"
            "junit: results of unit tests as XML; github: annotations\n"
            "of a workflow; markdown: a summary; html: a page with\n"
            "filters and drawings of glyphs. Default: text.")
      ->option_text("FORMAT")
      ->group(group);
  AddRepeatable(app, "-o,--output", outputs,
                "Write the report to a file instead of standard output.\n"
                "With FORMAT: before it, write a further report in that\n"
                "format to the file. Repeatable.")
      ->option_text("[FORMAT:]FILE")
      ->group(group);
  app.add_flag("--all-messages", options.allMessages, "Show every message of a rule that many glyphs break, too.")
      ->group(group);
  app.add_flag("--limit-to-shown", options.limitToShown,
               "Leave messages that are not shown, and those that do not\n"
               "count, out of json, jsonl and plist, too.")
      ->group(group);
  app.add_flag("!--no-times", options.times,
               "Leave the time out of json, jsonl and plist: two runs over\n"
               "the same fonts make the same report.")
      ->group(group);
  app.add_option("--max-messages", options.maxMessages,
                 "Keep so many messages of one test over one font; further\n"
                 "ones count in the result only. 0: all. Default: 10000.")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->option_text("N")
      ->group(group);
  app.add_option_function<std::string>(
         "--language", [&options](const std::string& tag) { options.language = LanguageFrom(tag); },
         "Language of the messages, such as en or de-AT, where there\n"
         "is a translation; none: the library's own texts. Default:\n"
         "that of the environment.")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->option_text("TAG")
      ->group(group);
  AddChoice(app, "--color", options.color, kColors,
            "auto, always or never. auto colors text on a terminal,\n"
            "unless NO_COLOR is set. Default: auto.")
      ->option_text("WHEN")
      ->group(group);
  app.add_flag("-q,--quiet", options.quiet,
               "Write nothing to standard output; errors, the exit status\n"
               "and a report asked for with --output remain.")
      ->group(group);
}

void AddRunOptions(CLI::App& app, Options& options) {
  static const Choices<std::optional<Severity>> kFailLevels = [] {
    Choices<std::optional<Severity>> levels(kLevels.begin(), kLevels.end());
    levels.emplace_back("never", std::nullopt);
    return levels;
  }();
  static const Choices<Profile> kProfiles = {{"default", Profile::kDefault}, {"strict", Profile::kStrict}};
  const char* group = "What counts";
  AddChoice(app, "--profile", options.profile, kProfiles,
            "default: findings of rules that mattered to older systems\n"
            "only are left out of text and of --fail-on; strict: all\n"
            "count. Default: default.")
      ->option_text("PROFILE")
      ->group(group);
  app.add_option("--baseline", options.baseline,
                 "Compare with an earlier report in json or jsonl: findings\n"
                 "that stand there do not count.")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->option_text("FILE")
      ->group(group);
  app.add_option("--config", options.configurationFile,
                 "Read this configuration. Default: vorn-font-test.toml in\n"
                 "the folder of the fonts or the nearest above it.")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->option_text("FILE")
      ->group(group);
  app.add_flag_callback(
         "--no-config", [&options] { options.useConfiguration = false; }, "Read no configuration.")
      ->group(group);
  AddChoice(app, "--fail-on", options.failOn, kFailLevels,
            "Exit with 1 when something of this level or above is\n"
            "found; or never. Default: major.")
      ->option_text("LEVEL")
      ->group(group);
  group = "Instead of a run";
  app.add_option("--explain", options.explain,
                 "Explain a rule, such as glyf/box-differs, or all rules of a\n"
                 "test or of a group of them, such as glyf, and run no test.")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->option_text("NAME")
      ->group(group);
  app.add_option("--files-from", options.filesFrom,
                 "Test also the files and directories that this file lists,\n"
                 "one a line; - stands for standard input.")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->option_text("FILE")
      ->group(group);
  app.add_flag("-0,--null", options.nullSeparated, "In that list, NULs end the paths, as find -print0 has it.")
      ->group(group);
  app.add_flag("--merge", options.merge,
               "The paths are reports in JSON lines of parts of a run:\n"
               "write one report of them, each file once, and exit as one\n"
               "run would.")
      ->group(group);
  app.add_option("-j,--jobs", options.jobs,
                 "Test so many files at a time, in processes that can do\n"
                 "little else: a crash costs one file. 0: in this process.\n"
                 "Default: as many as there are cores.")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->check(CLI::Range(size_t{0}, kMaximumJobs))
      ->option_text("N")
      ->group(group);
  app.add_option("--timeout", options.timeout, "Give up a file after so long. 0: never. Default: 60.")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->check(CLI::Range(uint64_t{0}, kMaximumTimeout))
      ->option_text("SECONDS")
      ->group(group);
  app.add_option("--memory", options.memory,
                 "Give up a file that takes more memory to test.\n"
                 "0: no limit. Default: 2048.")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->check(CLI::Range(uint64_t{0}, kMaximumMemory))
      ->option_text("MB")
      ->group(group);
  app.add_flag_callback(
         "--no-progress", [&options] { options.progress = false; }, "Do not show on a terminal how far a long run is.")
      ->group(group);
  app.set_help_flag("-h,--help", "Print this help.")->group(group);
  app.set_version_flag("--version", "vorn-font-test " VORN_VERSION, "Print the version.")->group(group);
}

std::string HelpText(const CLI::App& app) {
  std::string text = app.help();
  for (size_t at; (at = text.find("\n\n\n")) != std::string::npos;) text.erase(at, 1);
  return text;
}

/// CLI11's default usage line does not say that options repeat, nor that paths may be left out.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App*, std::string) const override {
    return "\nUsage: vorn-font-test [OPTION]... PATH...\n"
           "       vorn-font-test --merge [OPTION]... PART...\n"
           "       vorn-font-test --list-tests [OPTION]...\n"
           "       vorn-font-test --explain NAME\n";
  }
  std::string make_positionals(const CLI::App*) const override {
    return "\nPATH is a font file or a directory, which is searched for font files recursively.\n";
  }
};

/// Takes what CLI11 did not recognise for paths. (Its own list of positional values would split a path in brackets.)
void TakePaths(const CLI::App& app, Options& options) {
  for (const std::string& path : app.remaining()) {
    if (path.size() > 1 && path.front() == '-') throw UsageError("unknown option " + path);
    options.paths.push_back(path);
  }
}

/// The reports that the values of --output and the other options ask for: FILE takes the place of standard output,
/// FORMAT:FILE adds a report.
std::vector<ReportRequest> ReportsWanted(const Options& options, const std::vector<std::string>& outputs) {
  std::vector<ReportRequest> reports;
  ReportRequest main{.format = options.format, .file = std::nullopt};
  for (const std::string& output : outputs) {
    const size_t colon = output.find(':');
    const auto known =
        std::ranges::find(kFormats, std::string_view(output).substr(0, colon), &Choices<Format>::value_type::first);
    if (colon != std::string::npos && known != kFormats.end()) {
      reports.push_back({.format = known->second, .file = output.substr(colon + 1)});
    } else {
      main.file = output;
    }
  }
  if (main.file || !options.quiet) reports.insert(reports.begin(), main);
  return reports;
}

/// Whether the list of tests can be written so; other formats tell of findings only.
bool IsFormatOfTestList(Format format) {
  return format == Format::kText || format == Format::kJson || format == Format::kJsonLines ||
         format == Format::kPropertyList;
}

/// What else the command line asks for then counts for nothing.
Options AnswerOnly(const std::string& text) {
  Options options;
  options.answer = text;
  return options;
}

/// What arguments ask for.
struct Parsed {
  Options options;
  std::set<std::string> given;  ///< the long names of the options that they set
};

Parsed Parse(std::vector<std::string> arguments) {
  Parsed result;
  Options& options = result.options;
  CLI::App app(kDescription, "vorn-font-test");
  auto formatter = std::make_shared<HelpFormatter>();
  formatter->column_width(24);
  app.formatter(formatter);
  app.footer(kFooter);
  app.allow_extras();
  AddTestOptions(app, options);
  std::vector<std::string> outputs;
  AddReportOptions(app, options, outputs);
  AddRunOptions(app, options);
  const auto dashes = std::ranges::find(arguments, "--");
  try {
    app.parse(std::vector<std::string>(std::reverse_iterator(dashes), arguments.rend()));
  } catch (const CLI::CallForHelp&) {
    return {.options = AnswerOnly(HelpText(app)), .given = {}};
  } catch (const CLI::CallForVersion& version) {
    return {.options = AnswerOnly(std::string(version.what()) + "\n"), .given = {}};
  } catch (const CLI::ArgumentMismatch& error) {
    const std::string text = error.what();
    throw UsageError(text.substr(0, text.find(':')) + " needs a value");
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  TakePaths(app, options);
  options.reports = ReportsWanted(options, outputs);
  if (dashes != arguments.end()) options.paths.insert(options.paths.end(), dashes + 1, arguments.end());
  for (const CLI::Option* option : app.get_options()) {
    if (option->count() > 0 && !option->get_lnames().empty()) result.given.insert(option->get_lnames().front());
  }
  return result;
}

/// The configuration that the options name, or that lies with the fonts; null for none.
std::shared_ptr<const Configuration> ConfigurationFor(const Options& options) {
  if (!options.useConfiguration) return nullptr;
  const auto file = options.configurationFile ? options.configurationFile : FindConfiguration(options.paths);
  return file ? std::make_shared<const Configuration>(ReadConfiguration(*file)) : nullptr;
}

/// The options with what a configuration sets of those that the command line leaves open.
Options WithConfiguration(const Parsed& parsed, const std::vector<std::string>& arguments) {
  const auto configuration = ConfigurationFor(parsed.options);
  if (!configuration) return parsed.options;
  std::vector<std::string> all;
  for (const ConfiguredOption& option : configuration->options) {
    try {
      Parse(option.arguments);
    } catch (const UsageError& error) {
      throw UsageError(option.place + ": " + error.what());
    }
    if (!parsed.given.contains(option.name)) all.insert(all.end(), option.arguments.begin(), option.arguments.end());
  }
  all.insert(all.end(), arguments.begin(), arguments.end());
  Options options = Parse(all).options;
  options.configuration = configuration;
  return options;
}

}  // namespace

Options ParseCommandLine(int argc, const char* const* argv) {
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  const Parsed parsed = Parse(arguments);
  if (!parsed.options.answer.empty() || parsed.options.explain) return parsed.options;
  Options options = WithConfiguration(parsed, arguments);
  if (options.listTests && !IsFormatOfTestList(options.format)) {
    throw UsageError("--list-tests: the list has the formats text, json, jsonl and plist");
  }
  if (options.paths.empty() && !options.filesFrom && !options.listTests) {
    throw UsageError("no font file or directory given");
  }
  return options;
}

}  // namespace tool
