#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include "Core/RundleConduit.h"
#include "support/InstalledFolder.h"
#include "support/Values.h"

namespace {

using namespace test;
using namespace testing;

constexpr const char* kPort = "veltrin.Vorn.RundleConduit";

/// The program, with --attached: it runs until told to end, at the latest by the end of this.
class Service {
 public:
  /// prepare is run in the new process, before the program.
  explicit Service(
      const char* port = "", const std::function<void()>& prepare = [] {}) {
    int output[2];
    if (pipe2(input_, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    process_ = fork();
    if (process_ == 0) {
      dup2(input_[0], STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      prepare();
      execl(CONDUIT_PROGRAM, CONDUIT_PROGRAM, "--attached", "--port", port, nullptr);
    }
    close(output[1]);
    for (char byte; read(output[0], &byte, 1) == 1 && byte != '\n';) said_ += byte;
    close(output[0]);
  }
  ~Service() { End(0); }

  bool IsReady() const { return said_ == "ready"; }
  /// Sends the signal, or ends its standard input, and returns the exit status.
  int End(int number) {
    int status = 0;
    if (process_ == 0) return status;
    number ? kill(process_, number) : close(input_[1]);
    waitpid(std::exchange(process_, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  int input_[2];
  pid_t process_ = 0;
  std::string said_;
};

class ConduitService : public testing::Test {
 protected:
  /// Whether a font of the name is installed, other than the one at the path.
  bool Asks(const std::string& path, const std::string& name) {
    return conduit_.SendIsDuplicateFontMessage(FileUrl(path).get(), Tova::MakeString(name).get(), nullptr);
  }

  const RuntimeFolder runtime_{};
  const InstalledFolder folder_{};
  const std::string first_ = folder_.WriteFont("fonts/first.ttf", "Twice");
  const std::string second_ = folder_.WriteFont("fonts/second.ttf", "Twice");
  const std::string single_ = folder_.WriteFont("fonts/single.ttf", "Once");
  RundleConduit conduit_{Tova::MakeString(kPort)};
};

TEST_F(ConduitService, AnswersManyClientsAtOnce) {
  const Service service;
  const std::tuple<std::string, const char*, bool> questions[] = {
      {first_, "Twice", true}, {second_, "Twice", true}, {single_, "Once", false}, {first_, "Never", false}};
  std::atomic<int> right = 0;
  std::vector<std::thread> clients;
  for (size_t client = 0; client < 8; ++client) {
    clients.emplace_back([&, client] {
      RundleConduit own(Tova::MakeString(kPort));
      for (size_t i = 0; i < 125; ++i) {
        const auto& [path, name, found] = questions[(client + i) % std::size(questions)];
        const auto text = Tova::MakeString(name);
        if (own.SendIsDuplicateFontMessage(FileUrl(path).get(), text.get(), nullptr) == found) ++right;
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(right, 1000);
}

TEST_F(ConduitService, EndsWhenItIsToldTo) {
  for (const int number : {SIGTERM, SIGINT, 0}) {
    Service service;
    EXPECT_TRUE(service.IsReady());
    EXPECT_EQ(Service().End(0), 3) << "the port is served already";
    EXPECT_EQ(service.End(number), 0);
    EXPECT_FALSE(std::filesystem::exists(runtime_.File(kPort)));
  }
  EXPECT_EQ(Service("a/b").End(0), 3);
}

TEST_F(ConduitService, TakesTheSocketThatAServiceManagerPasses) {
  const auto listener = OpenRaw(kPort, bind);
  Service service("", [&] {
    dup2(listener.Number(), 3);
    fcntl(3, F_SETFD, 0);
    setenv("LISTEN_PID", std::to_string(getpid()).c_str(), 1);
    setenv("LISTEN_FDS", "1", 1);
  });
  EXPECT_TRUE(Asks("/x", "Once"));
  EXPECT_EQ(service.End(SIGTERM), 0);
  EXPECT_TRUE(std::filesystem::is_socket(runtime_.File(kPort))) << "it is the service manager's";
}

#ifndef __SANITIZE_ADDRESS__  // which needs descriptors of its own for its checks
TEST_F(ConduitService, MoreClientsThanItCanKeepDoNotKeepItFromAnswering) {
  const Service service("", [] {
    const rlimit few = {32, 32};
    setrlimit(RLIMIT_NOFILE, &few);
  });
  std::vector<Tova::Descriptor> idle;
  for (int i = 0; i < 60; ++i) idle.push_back(OpenRaw(kPort, connect));
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(Asks("/x", "Once"));
}
#endif

}  // namespace
