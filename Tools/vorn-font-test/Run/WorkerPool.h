#pragma once

#include <sys/types.h>

#include <chrono>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Run/Frames.h"
#include "Run/Outcome.h"
#include "Run/Sandbox.h"
#include "Run/Worker.h"

namespace tool {

/// How files are tested in processes of their own.
struct PoolSettings {
  size_t workers = 1;
  size_t reports = 0;               ///< how many each file has a part of
  std::chrono::seconds timeout{0};  ///< for one file; 0: none
  uint64_t memory = 0;              ///< bytes for one worker; 0: no limit
  bool askConduit = false;
};

/// Tests files in worker processes, several at a time, and hands on what comes of them in the order in which they were
/// added. What a worker does that it should not (it crashes, takes too long or too much memory) costs the file that it
/// was testing; another worker takes its place. Memory is bounded: Add waits when too much is under way.
///
/// Workers are forked when there is work for them, with all that this process has read by then. They read files at the
/// places of the paths alone: those known at first, and when files elsewhere come up, workers for their places, made
/// for many files at once, take over.
class WorkerPool {
 public:
  struct Events {
    TestFile test;  ///< called in the workers
    std::function<void(const std::string& path, FileOutcome& outcome)> done;
    /// Called now and then while the pool waits, at most kTick apart; may be empty. The path is that of the file whose
    /// turn it is.
    std::function<void(const std::string& path)> tick;
  };
  static constexpr std::chrono::milliseconds kTick{200};

  WorkerPool(const PoolSettings& settings, Events events, ReadablePlaces places);
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;
  /// Ends the workers, whatever they are at.
  ~WorkerPool();

  void Add(const std::string& path);
  /// Something that needs no test, in its place among the others.
  void AddDone(const std::string& path, FileOutcome outcome);
  /// Looks after the workers without waiting.
  void Poll() { Wait(std::chrono::milliseconds(0), -1); }
  /// Looks after the workers until the descriptor can be read.
  void WaitForInput(int descriptor);
  /// Waits for all files.
  void Finish();
  /// How many files are done and wait for their turn to be handed on.
  size_t CountDone() const { return done_; }

 private:
  using Clock = std::chrono::steady_clock;

  /// A file from when it is added to when it is handed on.
  struct Entry {
    std::string path;
    FileOutcome outcome;
    bool isDone = false;
  };
  struct Worker {
    pid_t process = 0;
    int channel = -1;
    FrameReader reader;
    Entry* entry = nullptr;  ///< that it tests; null: it is idle
    Clock::time_point deadline;
    std::shared_ptr<ReadablePlaces> places;
  };

  void MakeRoom();
  void GiveOutWork();
  Worker* WorkerFor(Entry& entry);
  void Start();
  bool MayGiveOut(const Entry& entry) const;
  void Give(Worker& worker, Entry& entry);
  void WidenPlaces();

  /// Waits for news of the workers, or for the descriptor; true when that can be read.
  bool Wait(std::optional<std::chrono::milliseconds> limit, int descriptor);
  int MillisecondsToWait(std::optional<std::chrono::milliseconds> limit) const;
  void Receive(Worker& worker);
  void Take(Worker& worker, const Frame& frame);
  void EndLate();
  void Complete(Worker& worker);
  void MarkDone(Entry& entry);
  /// Ends a worker; the file that it was at has this problem, or the one that the way it ended tells.
  void End(Worker& worker, std::optional<Problem> problem);
  void HandOn();

  PoolSettings settings_;
  Events events_;
  std::shared_ptr<ReadablePlaces> places_;  ///< of the workers that are started now
  std::list<Entry> entries_;                ///< in order
  std::deque<Entry*> waiting_;              ///< those that no worker has yet
  std::list<Worker> workers_;
  size_t done_ = 0;      ///< entries that are done, and
  size_t putBy_ = 0;     ///< how many bytes of memory they take
  bool urgent_ = false;  ///< whether files are not to wait for others that need workers of their kind
};

}  // namespace tool
