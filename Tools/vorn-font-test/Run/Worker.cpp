#include "Run/Worker.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <exception>
#include <new>

#include "Run/Frames.h"
#include "Run/Signals.h"

namespace tool {
namespace {

/// The number of the channel in a worker.
constexpr int kChannel = 3;

/// How much is collected before it is sent, in bytes.
constexpr size_t kBatch = size_t{32} * 1024;

/// Sends what a file comes to to the parent, in frames of many pieces.
class FrameSink : public OutcomeSink {
 public:
  void WritePart(size_t report, std::string_view text) override {
    if (report != report_) SendPart();
    report_ = report;
    for (; !text.empty(); text.remove_prefix(std::min(text.size(), kBatch))) {
      part_.append(text.substr(0, kBatch));
      if (part_.size() >= kBatch) SendPart();
    }
  }
  void WriteLine(std::string_view line) override {
    AppendFrame(frames_, {FrameType::kLine, 0, line.substr(0, kMaximumFrame)});
    if (frames_.size() >= kBatch) Send();
  }
  void End(const Totals& totals) override {
    SendPart();
    AppendFrame(frames_, {FrameType::kTotals, 0, ToBytes(totals)});
    Send();
  }
  void Fail(const Problem& problem) override {
    part_.clear();
    AppendFrame(frames_, {FrameType::kProblem, static_cast<uint32_t>(problem.kind), problem.text});
    Send();
  }

 private:
  void SendPart() {
    if (part_.empty()) return;
    AppendFrame(frames_, {FrameType::kPart, static_cast<uint32_t>(report_), part_});
    part_.clear();
    if (frames_.size() >= kBatch) Send();
  }
  void Send() {
    if (!WriteAll(kChannel, frames_)) _exit(0);  // the parent is gone
    frames_.clear();
  }

  size_t report_ = 0;
  std::string part_;  ///< text of that report
  std::string frames_;
};

void TestAndSend(const std::string& path, const TestFile& test) {
  FrameSink sink;
  try {
    test(path, sink);
  } catch (const std::exception& error) {
    sink.Fail({ProblemKind::kSystem, error.what()});
  } catch (...) {
    sink.Fail({ProblemKind::kSystem, "an unknown error"});
  }
}

/// Keeps standard error and the channel, and nothing else that the parent has open.
void CloseAllBut(int channel) {
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  dup2(nothing, STDOUT_FILENO);
  dup2(channel, kChannel);
  closefrom(kChannel + 1);
}

}  // namespace

void RunWorker(int channel, pid_t parent, const Permissions& permissions, const TestFile& test) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(0);
  LeaveSignalsToParent();
  CloseAllBut(channel);
  std::set_new_handler([] { _exit(kWorkerOutOfMemory); });
  Confine(permissions);
  FrameReader reader;
  while (reader.Read(kChannel) == FrameReader::State::kMore) {
    while (const auto frame = reader.Next()) TestAndSend(std::string(frame->text), test);
  }
  _exit(0);
}

}  // namespace tool
