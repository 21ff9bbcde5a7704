#include "Run/WorkerPool.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>

#include "Run/Signals.h"

namespace tool {
namespace {

/// How many files may wait for a worker: the more, the fewer workers are made anew for other folders.
constexpr size_t kMaximumWaiting = 1024;
/// How many files may be under way altogether, so that what is done does not pile up behind one that takes long.
constexpr size_t kMaximumEntries = 4096;
/// The same in bytes; beyond it, only the file whose turn it is gets a worker.
constexpr size_t kMaximumPutBy = size_t{64} << 20;

/// Waits for the end of a worker, which is near, and returns its status.
int Reap(pid_t process) {
  constexpr int kPatience = 500;  // milliseconds, for one that closed its channel and goes on
  int status = 0;
  for (int i = 0; i < kPatience; ++i) {
    const pid_t ended = waitpid(process, &status, WNOHANG);
    if (ended > 0 || (ended < 0 && errno != EINTR)) return status;
    poll(nullptr, 0, i == 0 ? 0 : 1);
  }
  kill(process, SIGKILL);
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

/// What the end of a worker says.
Problem ProblemOf(int status) {
  if (WIFSIGNALED(status)) return ProblemOfSignal(WTERMSIG(status));
  if (WEXITSTATUS(status) == kWorkerOutOfMemory) return ProblemOfMemory();
  return {ProblemKind::kCrash, "the process that tested it ended: exit status " + std::to_string(WEXITSTATUS(status))};
}

}  // namespace

WorkerPool::WorkerPool(const PoolSettings& settings, Events events, ReadablePlaces places)
    : settings_(settings), events_(std::move(events)), places_(std::make_shared<ReadablePlaces>(std::move(places))) {}

WorkerPool::~WorkerPool() {
  for (const Worker& worker : workers_) kill(worker.process, SIGKILL);
  for (const Worker& worker : workers_) {
    close(worker.channel);
    Reap(worker.process);
  }
}

void WorkerPool::Add(const std::string& path) {
  entries_.push_back({.path = path, .outcome = FileOutcome(settings_.reports)});
  waiting_.push_back(&entries_.back());
  MakeRoom();
}

void WorkerPool::AddDone(const std::string& path, FileOutcome outcome) {
  entries_.push_back({.path = path, .outcome = std::move(outcome)});
  MarkDone(entries_.back());
  MakeRoom();
}

/// Waits while too much is under way.
void WorkerPool::MakeRoom() {
  Poll();
  while (waiting_.size() >= kMaximumWaiting || entries_.size() >= kMaximumEntries) {
    urgent_ = true;
    Wait(std::nullopt, -1);
    urgent_ = false;
  }
}

void WorkerPool::WaitForInput(int descriptor) {
  urgent_ = true;
  while (!Wait(std::nullopt, descriptor)) {
  }
  urgent_ = false;
}

void WorkerPool::Finish() {
  urgent_ = true;
  Poll();
  while (!entries_.empty()) Wait(std::nullopt, -1);
}

// ---- Work for the workers

void WorkerPool::GiveOutWork() {
  while (!waiting_.empty() && MayGiveOut(*waiting_.front())) {
    Entry& entry = *waiting_.front();
    Worker* worker = WorkerFor(entry);
    if (!worker) return;
    waiting_.pop_front();
    Give(*worker, entry);
  }
}

bool WorkerPool::MayGiveOut(const Entry& entry) const { return putBy_ < kMaximumPutBy || &entry == &entries_.front(); }

/// An idle worker that may read the file, made when need be; null when there is none now.
WorkerPool::Worker* WorkerPool::WorkerFor(Entry& entry) {
  const bool canConfine = CanConfineToPlaces();
  const auto fits = [&](const Worker& worker) {
    return !worker.entry && (!canConfine || worker.places->Cover(entry.path));
  };
  if (const auto found = std::ranges::find_if(workers_, fits); found != workers_.end()) return &*found;
  const auto idle = std::ranges::find(workers_, nullptr, &Worker::entry);
  if (idle == workers_.end() && workers_.size() >= settings_.workers) return nullptr;
  if (canConfine && !places_->Cover(entry.path)) {
    if (!urgent_) return nullptr;  // the files after it may need other places, too
    WidenPlaces();
  }
  if (idle != workers_.end()) End(*idle, std::nullopt);
  Start();
  return &workers_.back();
}

/// The places of all files that wait are those of the workers to come.
void WorkerPool::WidenPlaces() {
  auto places = std::make_shared<ReadablePlaces>();
  places->AddResources();
  for (const Entry* entry : waiting_) places->AddFile(entry->path);
  places_ = std::move(places);
}

void WorkerPool::Start() {
  std::array<int, 2> ends = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    throw std::runtime_error(std::string("no channel to a worker: ") + std::strerror(errno));
  }
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process < 0) {
    const int error = errno;
    for (const int end : ends) close(end);
    throw std::runtime_error(std::string("no process for a worker: ") + std::strerror(error));
  }
  if (process == 0) {
    RunWorker(ends[1], parent,
              {.memory = settings_.memory, .askConduit = settings_.askConduit, .places = places_.get()}, events_.test);
  }
  close(ends[1]);
  Worker worker;
  worker.process = process;
  worker.channel = ends[0];
  worker.places = places_;
  workers_.push_back(std::move(worker));
}

void WorkerPool::Give(Worker& worker, Entry& entry) {
  std::string frame;
  AppendFrame(frame, {FrameType::kTest, 0, entry.path});
  if (!WriteAll(worker.channel, frame)) {  // it ended while it was idle
    waiting_.push_front(&entry);
    return End(worker, std::nullopt);
  }
  worker.entry = &entry;
  worker.deadline = Clock::now() + settings_.timeout;
}

// ---- News of the workers

bool WorkerPool::Wait(std::optional<std::chrono::milliseconds> limit, int descriptor) {
  GiveOutWork();
  HandOn();
  std::vector<pollfd> polled = {{InterruptionDescriptor(), POLLIN, 0}, {descriptor, POLLIN, 0}};
  std::vector<Worker*> workers;
  for (Worker& worker : workers_) {
    if (!worker.entry) continue;
    polled.push_back({worker.channel, POLLIN, 0});
    workers.push_back(&worker);
  }
  if (descriptor < 0 && limit != std::chrono::milliseconds(0) && workers.empty()) return false;
  if (poll(polled.data(), polled.size(), MillisecondsToWait(limit)) > 0) {
    ThrowIfInterrupted();
    for (size_t i = 0; i < workers.size(); ++i) {
      if (polled[i + 2].revents != 0) Receive(*workers[i]);
    }
  }
  EndLate();
  GiveOutWork();
  HandOn();
  if (events_.tick && !entries_.empty()) events_.tick(entries_.front().path);
  return polled[1].revents != 0;
}

int WorkerPool::MillisecondsToWait(std::optional<std::chrono::milliseconds> limit) const {
  if (limit) return static_cast<int>(limit->count());
  std::optional<Clock::duration> wait;
  const auto atMost = [&wait](Clock::duration duration) { wait = wait ? std::min(*wait, duration) : duration; };
  if (events_.tick) atMost(kTick);
  for (const Worker& worker : workers_) {
    if (worker.entry && settings_.timeout.count() > 0) atMost(worker.deadline - Clock::now());
  }
  if (!wait) return -1;
  const auto rounded = std::chrono::ceil<std::chrono::milliseconds>(*wait).count();
  return static_cast<int>(std::clamp<int64_t>(rounded, 0, 1'000'000));
}

void WorkerPool::Receive(Worker& worker) {
  const FrameReader::State state = worker.reader.Read(worker.channel);
  while (worker.entry) {
    const auto frame = worker.reader.Next();
    if (!frame) break;
    Take(worker, *frame);
  }
  if (worker.reader.IsBroken()) return End(worker, Problem{ProblemKind::kCrash, "the worker process went astray"});
  if (state != FrameReader::State::kMore) End(worker, std::nullopt);
}

void WorkerPool::Take(Worker& worker, const Frame& frame) {
  FileOutcome& outcome = worker.entry->outcome;
  switch (frame.type) {
    case FrameType::kPart:
      if (frame.number < outcome.parts.size()) outcome.WritePart(frame.number, frame.text);
      return;
    case FrameType::kLine:
      return outcome.WriteLine(frame.text);
    case FrameType::kTotals:
      outcome.End(TotalsFromBytes(frame.text));
      return Complete(worker);
    case FrameType::kProblem:
      outcome.Fail({static_cast<ProblemKind>(frame.number), std::string(frame.text)});
      return Complete(worker);
    case FrameType::kTest:
      break;
  }
}

void WorkerPool::Complete(Worker& worker) {
  MarkDone(*worker.entry);
  worker.entry = nullptr;
}

void WorkerPool::MarkDone(Entry& entry) {
  entry.isDone = true;
  ++done_;
  putBy_ += entry.outcome.MemorySize();
}

void WorkerPool::EndLate() {
  if (settings_.timeout.count() == 0) return;
  const auto now = Clock::now();
  for (auto next = workers_.begin(); next != workers_.end();) {
    Worker& worker = *next++;
    if (!worker.entry || worker.deadline > now) continue;
    End(worker, ProblemOfTimeout(static_cast<uint64_t>(settings_.timeout.count())));
  }
}

void WorkerPool::End(Worker& worker, std::optional<Problem> problem) {
  if (problem || !worker.entry) kill(worker.process, SIGKILL);
  close(worker.channel);
  const int status = Reap(worker.process);
  if (worker.entry) {
    worker.entry->outcome.Fail(problem ? *problem : ProblemOf(status));
    Complete(worker);
  }
  workers_.remove_if([&worker](const Worker& other) { return &other == &worker; });
}

void WorkerPool::HandOn() {
  while (!entries_.empty() && entries_.front().isDone) {
    Entry& entry = entries_.front();
    --done_;
    putBy_ -= entry.outcome.MemorySize();
    events_.done(entry.path, entry.outcome);
    entries_.pop_front();
  }
}

}  // namespace tool
