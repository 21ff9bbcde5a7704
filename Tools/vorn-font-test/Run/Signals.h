#pragma once

namespace tool {

/// The run was told to end.
struct Interrupted {
  int signal;
};

/// From here on SIGINT, SIGTERM and SIGHUP are remembered, unless the caller had them ignored; a second one ends the
/// program as ever. Writing to what nobody reads and beyond a limit of file size become errors.
void CatchSignals();
/// Throws Interrupted when one of them came.
void ThrowIfInterrupted();
/// While such an object lives, a signal has a function called where the program stands, which ends it. For work that
/// does not look whether it was interrupted; the function may do what handlers of signals may.
class EndsOnSignal {
 public:
  using End = void (*)(int signal);

  explicit EndsOnSignal(End end);
  EndsOnSignal(const EndsOnSignal&) = delete;
  EndsOnSignal& operator=(const EndsOnSignal&) = delete;
  ~EndsOnSignal();
};
/// Waits until a descriptor can be read. Throws Interrupted.
void WaitToRead(int descriptor);
/// A descriptor that can be read from then on; for poll.
int InterruptionDescriptor();
/// For a new process, whose parent sees to its end: ignores them.
void LeaveSignalsToParent();

}  // namespace tool
