#include "Options.h"

#include <CLI/CLI.hpp>

namespace conduit {
namespace {

constexpr const char* kDescription =
    "Tells programs of the same user which fonts are installed: serves the message port that VornFontTest's test\n"
    "for duplicate fonts asks. Takes the socket that a service manager passes, or makes it. Ends with SIGTERM.";

constexpr const char* kFooter = R"(Exit status:
  0  asked to end
  2  wrong usage
  3  the port has a conduit already or cannot be made, or the program itself failed)";

}  // namespace

Options ParseCommandLine(int argc, const char* const* argv) {
  Options options;
  CLI::App app(kDescription, "rundle-conduit");
  app.footer(kFooter);
  app.add_option("--port", options.port,
                 "Serve the message port of this name instead of the one that\n"
                 "programs with this value of XT_SERVICE_NAME_SUFFIX ask.")
      ->option_text("NAME");
  app.add_flag("--attached", options.attached,
               "Write the line 'ready' once the port is served, and end when\n"
               "standard input does.");
  app.add_flag("-v,--verbose", options.verbose, "Write what goes to the system log to standard error, too.");
  app.set_help_flag("-h,--help", "Print this help.");
  app.set_version_flag("--version", "rundle-conduit " VORN_VERSION, "Print the version.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    options.answer = app.help();
  } catch (const CLI::CallForVersion& version) {
    options.answer = std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  return options;
}

}  // namespace conduit
