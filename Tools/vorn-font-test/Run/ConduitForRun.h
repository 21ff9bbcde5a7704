#pragma once

#include <sys/types.h>

#include <string>

namespace tool {

/// Sees to it that the library finds a conduit, the service that knows which fonts are installed: the user's, where it
/// serves its port, else one of this run, which ends with this object or, at the latest, with this process.
class ConduitForRun {
 public:
  ConduitForRun() = default;
  ConduitForRun(const ConduitForRun&) = delete;
  ConduitForRun& operator=(const ConduitForRun&) = delete;
  ~ConduitForRun();

  /// To be called before the library asks its first question. Throws std::runtime_error when no conduit can be had.
  void Ensure();
  /// Throws std::runtime_error when the conduit of this run has ended by itself: questions went unanswered.
  void RequireAlive();

 private:
  void Start(const std::string& port);
  /// Reads what the conduit writes, up to the end of the line that says that it serves the port.
  bool IsReady() const;

  pid_t process_ = 0;  // 0: none of this run
  int input_ = -1;     // the other end of its standard input; it ends when this is closed
  int output_ = -1;    // the other end of its standard output
};

}  // namespace tool
