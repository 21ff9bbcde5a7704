#pragma once

#include <stdexcept>
#include <string>

namespace conduit {

/// What the command line asks for.
struct Options {
  std::string port;       ///< the name to serve; empty: the one that askers use
  bool attached = false;  ///< say when the port is served, and end with standard input
  bool verbose = false;   ///< log to standard error too

  std::string answer;  ///< when not empty, the text of --help or --version, which is all that was asked for
};

/// The command line asks for something that cannot be done; the text says what.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the command line. Throws UsageError.
Options ParseCommandLine(int argc, const char* const* argv);

}  // namespace conduit
