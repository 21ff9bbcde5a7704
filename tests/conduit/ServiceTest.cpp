#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstring>

#include "Core/RundleConduit.h"
#include "Platform/Descriptor.h"
#include "support/InstalledFolder.h"
#include "support/MessagePorts.h"
#include "support/Values.h"

namespace {

using namespace test;
using namespace testing;

constexpr const char* kPort = "veltrin.Vorn.RundleConduit";

/// The program, running; its standard output is at hand, and its standard input open as long as this is.
class Service {
 public:
  /// prepare is run in the new process, before the program.
  explicit Service(
      std::vector<std::string> arguments, const std::function<void()>& prepare = [] {}) {
    std::array<int, 2> input;
    std::array<int, 2> output;
    if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    arguments.insert(arguments.begin(), CONDUIT_PROGRAM);
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) {
      dup2(input[0], STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      prepare();
      execv(CONDUIT_PROGRAM, pointers.data());
      _exit(127);
    }
    input_ = Tova::Descriptor(input[1]);
    output_ = Tova::Descriptor(output[0]);
    close(input[0]);
    close(output[1]);
  }
  ~Service() {
    if (process_ > 0) Signal(SIGKILL), Wait();
  }

  /// The next line it writes, empty at the end.
  std::string Line() const {
    std::string line;
    for (char character = 0; read(output_.Number(), &character, 1) == 1 && character != '\n';) line += character;
    return line;
  }
  void Signal(int number) const { kill(process_, number); }
  void CloseInput() { input_.Close(); }
  /// Waits for its end and returns its exit status.
  int Wait() {
    int status = 0;
    waitpid(std::exchange(process_, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t process_ = 0;
  Tova::Descriptor input_;
  Tova::Descriptor output_;
};

class ConduitService : public testing::Test {
 protected:
  /// Whether a font of the name is installed, other than the one at the path.
  static bool Asks(RundleConduit& conduit, const std::string& path, const std::string& name) {
    return conduit.SendIsDuplicateFontMessage(FileUrl(path).get(), Tova::MakeString(name).get(), nullptr);
  }
  static Tova::String Name() { return Tova::MakeString(kPort); }

  const RuntimeFolder runtime_;
  const InstalledFolder folder_;
  const Variable configuration_{"FONTCONFIG_FILE", folder_.Configuration().c_str()};
  RundleConduit conduit_{Name()};
};

TEST_F(ConduitService, AnswersManyClientsAtOnce) {
  const std::string first = folder_.Write("fonts/first.ttf", "Twice");
  const std::string second = folder_.Write("fonts/second.ttf", "Twice");
  const std::string single = folder_.Write("fonts/single.ttf", "Once");
  Service service({"--attached"});
  ASSERT_EQ(service.Line(), "ready");
  const struct {
    std::string path, name;
    bool found;
  } questions[] = {{first, "Twice", true},
                   {second, "Twice", true},
                   {single, "Once", false},
                   {first, "Once", true},
                   {first, "Never", false}};
  std::atomic<int> right = 0;
  std::vector<std::thread> clients;
  for (size_t client = 0; client < 8; ++client) {
    clients.emplace_back([&, client] {
      RundleConduit own(Name());
      for (size_t i = 0; i < 125; ++i) {
        const auto& question = questions[(client + i) % std::size(questions)];
        if (Asks(own, question.path, question.name) == question.found) ++right;
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(right, 1000);
}

TEST_F(ConduitService, NoticesAFontThatIsInstalledWhileItRuns) {
  Service service({"--attached"});
  ASSERT_EQ(service.Line(), "ready");
  const std::string copy = folder_.Write("copy.ttf", "New");
  EXPECT_FALSE(Asks(conduit_, copy, "New"));
  const std::string installed = folder_.Write("fonts/new.ttf", "New");
  EXPECT_TRUE(Asks(conduit_, copy, "New"));
  EXPECT_FALSE(Asks(conduit_, installed, "New"));
}

TEST_F(ConduitService, EndsWhenItIsToldTo) {
  for (const int number : {SIGTERM, SIGINT, 0}) {
    Service service({"--attached"});
    ASSERT_EQ(service.Line(), "ready");
    EXPECT_TRUE(std::filesystem::is_socket(runtime_.File(kPort)));
    Service second({"--attached"});
    EXPECT_EQ(second.Line(), "");
    EXPECT_EQ(second.Wait(), 3) << "the port is served already";
    number ? service.Signal(number) : service.CloseInput();
    EXPECT_EQ(service.Wait(), 0);
    EXPECT_FALSE(std::filesystem::exists(runtime_.File(kPort)));
  }
  EXPECT_EQ(Service({"--bogus"}).Wait(), 2);
  EXPECT_EQ(Service({"--port", "a/b"}).Wait(), 3);
}

TEST_F(ConduitService, IsFoundUnderTheSameSuffixAsItsClients) {
  const Variable suffix("XT_SERVICE_NAME_SUFFIX", "own_VALIDATOR_%V");
  Service service({"--attached"});
  ASSERT_EQ(service.Line(), "ready");
  EXPECT_TRUE(Connect("veltrin.Vorn.RundleConduit_own"));
}

TEST_F(ConduitService, TakesTheSocketThatAServiceManagerPasses) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, runtime_.File(kPort).c_str(), sizeof(address.sun_path) - 1);
  const Tova::Descriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(bind(listener.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  ASSERT_EQ(listen(listener.Number(), 5), 0);
  folder_.Write("fonts/new.ttf", "New");
  Service service({"--attached"}, [&] {
    dup2(listener.Number(), 3);
    fcntl(3, F_SETFD, 0);
    setenv("LISTEN_PID", std::to_string(getpid()).c_str(), 1);
    setenv("LISTEN_FDS", "1", 1);
  });
  EXPECT_TRUE(Asks(conduit_, "/x", "New")) << "whether the service listens yet or not";
  service.Signal(SIGTERM);
  EXPECT_EQ(service.Wait(), 0);
  EXPECT_TRUE(std::filesystem::is_socket(runtime_.File(kPort))) << "it is the service manager's";
}

TEST_F(ConduitService, MoreClientsThanItCanKeepDoNotKeepItFromAnswering) {
  folder_.Write("fonts/new.ttf", "New");
  Service service({"--attached"}, [] {
    const rlimit few = {32, 32};
    setrlimit(RLIMIT_NOFILE, &few);
  });
  ASSERT_EQ(service.Line(), "ready");
  std::vector<Tova::Descriptor> idle;
  for (int i = 0; i < 60; ++i) idle.emplace_back(ConnectRaw(kPort));
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(Asks(conduit_, "/x", "New"));
}

}  // namespace
