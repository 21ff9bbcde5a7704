#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>

#include "Platform/Descriptor.h"
#include "support/MessagePorts.h"

namespace {

using namespace test;
using namespace testing;
using Script = ScriptedPeer::Script;

constexpr const char* kName = "test.port";
constexpr double kNever = 1000;  // seconds; what waits for this has failed

std::string Echo(int32_t id, std::string_view data) { return std::to_string(id) + std::string(data); }

/// The status of a request, and the reply.
std::string Ask(const Tova::MessagePort& port, int32_t id, std::string_view data, double sendTimeout = kNever,
                double receiveTimeout = kNever) {
  TovaDataRef reply = nullptr;
  const int status =
      TovaMessagePortSendRequest(port.get(), id, MakeData(data).get(), sendTimeout, receiveTimeout, &reply);
  const auto owned = Tova::Adopt(reply);
  const auto* bytes = reinterpret_cast<const char*>(TovaDataGetBytes(reply));
  return std::to_string(status) + (reply ? " " + std::string(bytes, TovaDataGetLength(reply)) : "");
}

std::string ReadAll(int socket) {
  std::string bytes;
  std::array<char, 4096> part;
  for (ssize_t count; (count = recv(socket, part.data(), part.size(), 0)) > 0;) {
    bytes.append(part.data(), static_cast<size_t>(count));
  }
  return bytes;
}

Tova::LocalMessagePort Serve(const std::string& name) {
  const auto answer = [](int32_t, TovaDataRef, void*) -> TovaDataRef { return nullptr; };
  return Tova::Adopt(TovaLocalMessagePortCreate(Tova::MakeString(name).get(), answer, nullptr));
}

TEST(MessagePorts, ARequestGetsItsReply) {
  const RuntimeFolder folder;
  EXPECT_FALSE(Connect(kName));
  const PortServer server(kName, Echo);
  const auto port = Connect(kName);
  EXPECT_EQ(Ask(port, -7, "word"), "0 -7word");
  EXPECT_EQ(Ask(port, 1, ""), "0 1");
  const std::string large(16 * 1024 * 1024 - 1, 'x');
  EXPECT_EQ(Ask(port, 1, large), "0 1" + large);
  EXPECT_EQ(Ask(port, 1, large + "xx"), "-4");
  EXPECT_EQ(Ask(port, 12, large), "0") << "a reply that is too long is an empty one";
  EXPECT_EQ(Ask(port, 2, "still"), "0 2still");
}

// Under ThreadSanitizer, too.
TEST(MessagePortThreads, ManyClientsAtOnceAreAnsweredEachItsOwn) {
  const RuntimeFolder folder;
  const PortServer server(kName, Echo);
  const auto shared = Connect(kName);
  std::vector<std::thread> clients;
  std::atomic<int> right = 0;
  for (int client = 0; client < 8; ++client) {
    clients.emplace_back([&, client] {
      const auto own = Connect(kName);
      for (int i = 0; i < 50; ++i) {
        for (const Tova::MessagePort& port : {own, shared}) {
          const std::string text(static_cast<size_t>(i * 1000), static_cast<char>('a' + client));
          if (Ask(port, client, text) == "0 " + Echo(client, text)) ++right;
        }
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(right, 8 * 50 * 2);
}

TEST(MessagePorts, LieInThePrivateFolderOfTheUser) {
  const TemporaryFolder temporary;
  const Variable runtime("XDG_RUNTIME_DIR", "relative");
  const Variable folder("TMPDIR", temporary.Path().c_str());
  const auto own = temporary.Path() / ("tova-" + std::to_string(geteuid()));
  EXPECT_FALSE(Connect(kName));
  EXPECT_FALSE(std::filesystem::exists(own));
  {
    const auto port = Serve(kName);
    ASSERT_TRUE(port);
    EXPECT_TRUE(std::filesystem::is_socket(own / kName));
    EXPECT_EQ(std::filesystem::status(own).permissions(), std::filesystem::perms::owner_all);
    EXPECT_TRUE(Connect(kName));
    chmod(own.c_str(), 0711);
    EXPECT_FALSE(Connect(kName));
    EXPECT_FALSE(Serve("other"));
  }
  EXPECT_TRUE(std::filesystem::is_empty(own));
}

TEST(MessagePorts, HaveOneServerAndAFileName) {
  const RuntimeFolder folder;
  for (const std::string& name : {std::string(), std::string(".."), std::string("a/b"), std::string(200, 'n')}) {
    EXPECT_FALSE(Serve(name)) << name;
    EXPECT_FALSE(Connect(name)) << name;
  }
  { const ScriptedPeer dead(kName, {}); }  // leaves its socket
  const auto port = Serve(kName);
  EXPECT_TRUE(port);
  EXPECT_FALSE(Serve(kName));
  const auto file = std::ofstream(folder.File("file"));
  EXPECT_FALSE(Serve("file"));
  EXPECT_TRUE(std::filesystem::exists(folder.File("file")));
}

TEST(MessagePorts, APeerThatMisbehavesCostsNoMoreThanTheTimeout) {
  const RuntimeFolder folder;
  const auto replying = [](const std::string& bytes, bool stall) {
    return [=](int socket) {
      ScriptedPeer::Read(socket);
      ScriptedPeer::Write(socket, bytes);
      if (stall) ScriptedPeer::Stall(socket);
    };
  };
  const struct {
    const char* what;
    Script script;
    const char* status;
  } cases[] = {{"goes at once", [](int) {}, "-3"},
               {"goes after the request", [](int socket) { ScriptedPeer::Read(socket); }, "-3"},
               {"dies in the header", replying("\0\0\0", false), "-3"},
               {"dies in the data", replying(Frame(5, "half", 8), false), "-3"},
               {"stalls in the data", replying(Frame(5, "half", 8), true), "-2"},
               {"says nothing", replying("", true), "-2"},
               {"answers another", replying(Frame(6, "text"), true), "-4"},
               {"promises too much", replying(Frame(5, "", 16 * 1024 * 1024 + 1), true), "-4"},
               {"sends garbage", replying("garbage garbage", true), "-4"}};
  for (const auto& c : cases) {
    const ScriptedPeer peer(kName, {c.script});
    const auto port = Connect(kName);
    EXPECT_EQ(Ask(port, 5, "text", kNever, std::string(c.status) == "-2" ? 0.02 : kNever), c.status) << c.what;
    EXPECT_EQ(Ask(port, 5, "text"), "-3") << c.what << ", and is asked again";
  }
  const ScriptedPeer deaf(kName, {ScriptedPeer::Stall});
  EXPECT_EQ(Ask(Connect(kName), 5, std::string(4'000'000, 'x'), 0.02, kNever), "-1");
}

TEST(MessagePorts, AReplyThatNobodyAskedForIsNotTakenForTheNext) {
  const RuntimeFolder folder;
  const ScriptedPeer peer(kName, {[](int socket) {
                            ScriptedPeer::Read(socket);
                            ScriptedPeer::Write(socket, Frame(5, "first") + Frame(5, "more"));
                            ScriptedPeer::Stall(socket);
                          }});
  const auto port = Connect(kName);
  EXPECT_EQ(Ask(port, 5, "text"), "0 first");
  EXPECT_EQ(Ask(port, 5, "text"), "-3");
}

TEST(MessagePorts, AServerIsNotKeptFromOthersByAClientThatMisbehaves) {
  const RuntimeFolder folder;
  const LogLines log;
  const PortServer server(kName, Echo);
  const Tova::Descriptor half(ConnectRaw(kName));
  ScriptedPeer::Write(half.Number(), Frame(1, "ha", 4));
  const Tova::Descriptor deaf(ConnectRaw(kName));
  for (int i = 0; i < 3; ++i) ScriptedPeer::Write(deaf.Number(), Frame(1, std::string(100'000, 'x')));
  const Tova::Descriptor greedy(ConnectRaw(kName));
  ScriptedPeer::Write(greedy.Number(), Frame(1, "", 0x7FFFFFFF));
  EXPECT_EQ(ReadAll(greedy.Number()), "");
  EXPECT_THAT(log.Get(), ElementsAre("A message of 2147483647 bytes was refused."));
  { const Tova::Descriptor gone(ConnectRaw(kName)); }
  EXPECT_EQ(Ask(Connect(kName), 1, "well"), "0 1well");

  ScriptedPeer::Write(half.Number(), "lf" + Frame(2, "two") + Frame(3, ""));
  shutdown(half.Number(), SHUT_WR);
  EXPECT_EQ(ReadAll(half.Number()), Frame(1, "1half") + Frame(2, "2two") + Frame(3, "3"));
}

TEST(MessagePorts, OtherUsersAreNotTalkedTo) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become another user";
  const RuntimeFolder folder;
  const PortServer server(kName, Echo);
  const std::string path = folder.File(kName);
  chmod(std::filesystem::path(path).parent_path().c_str(), 0777);
  chmod(path.c_str(), 0777);
  const pid_t other = fork();
  if (other == 0) {
    if (setresuid(12345, 12345, 12345) != 0 || Connect(kName)) _exit(1);
    const Tova::Descriptor client(ConnectRaw(kName));
    const std::string message = Frame(1, "text");
    send(client.Number(), message.data(), message.size(), MSG_NOSIGNAL);  // fails where the server has left already
    _exit(ReadAll(client.Number()).empty() ? 0 : 2);
  }
  int status = 0;
  waitpid(other, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
