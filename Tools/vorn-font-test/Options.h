#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Report/Severity.h"

namespace tool {

enum class Detail { kResults, kSummary, kFull };
enum class Format { kText, kJson, kJsonLines, kPropertyList, kSarif, kJUnit, kGithub, kMarkdown, kHtml };
enum class Profile {
  kDefault,  ///< rules of older systems do not count
  kStrict    ///< all rules count
};
enum class ColorMode { kAuto, kAlways, kNever };

/// The word for no language in particular: the library's own texts.
inline constexpr std::string_view kNoLanguage = "none";

/// A report that is wanted.
struct ReportRequest {
  Format format = Format::kText;
  std::optional<std::string> file;  ///< none: standard output
};

struct Configuration;

/// What the command line and the configuration ask for.
struct Options {
  std::vector<std::string> paths;
  std::vector<std::string> tests;     ///< identifiers and globs, in the order given; empty: all tests
  std::vector<std::string> excludes;  ///< identifiers and globs
  std::vector<std::string> types;     ///< words of test types; empty: all types
  bool duplicates = false;            ///< ask whether another font of the same name is installed
  Severity enable = Severity::kInformation;

  Detail detail = Detail::kFull;
  Format format = Format::kText;  ///< of what goes to standard output, or to the file that has no format of its own
  std::vector<ReportRequest> reports;  ///< none: only the exit status is wanted
  Severity show = Severity::kMinor;
  bool allMessages = false;
  uint64_t maxMessages = 10'000;  ///< kept of one test over one font; 0: all
  std::string language;           ///< of messages: "de_AT", "none" for no translation; empty: the environment's
  ColorMode color = ColorMode::kAuto;
  bool quiet = false;

  Profile profile = Profile::kDefault;
  bool useConfiguration = true;
  std::optional<std::string> configurationFile;        ///< none: the one that lies with the fonts
  std::shared_ptr<const Configuration> configuration;  ///< what stands in it; null for none
  std::optional<std::string> baseline;                 ///< an earlier report; none: all findings are new
  std::optional<Severity> failOn = Severity::kMajor;   ///< none: findings never fail the run
  bool listTests = false;
  std::optional<std::string> explain;    ///< the rule, test or group of rules to be explained
  bool merge = false;                    ///< the paths are parts of reports, to be made one
  std::optional<std::string> filesFrom;  ///< a list of further paths; "-": standard input
  bool nullSeparated = false;            ///< NULs end the paths in it, not line ends

  std::optional<size_t> jobs;  ///< worker processes; 0: files are tested in this process; none: a worker for each core
  uint64_t timeout = 60;       ///< seconds that testing one file may take; 0: no limit
  bool progress = true;        ///< show on a terminal how far the run is
  uint64_t memory = 2048;      ///< megabytes that a worker may take; 0: no limit

  std::string answer;  ///< when not empty, the text of --help or --version, which is all that was asked for
};

/// The command line asks for something that cannot be done; the text says what.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the command line. Throws UsageError.
Options ParseCommandLine(int argc, const char* const* argv);

}  // namespace tool
