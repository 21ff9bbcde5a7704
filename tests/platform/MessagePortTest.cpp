#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "support/MessagePorts.h"

namespace {

using namespace test;
using namespace testing;

constexpr const char* kName = "test.port";

std::string Echo(int32_t id, const std::string& data) { return std::to_string(id) + data; }

Tova::MessagePort Connect(const std::string& name) {
  return Tova::Adopt(TovaMessagePortCreateRemote(Tova::MakeString(name).get()));
}

bool CanServe(const std::string& name) {
  const auto answer = [](int32_t, TovaDataRef, void*) -> TovaDataRef { return nullptr; };
  return static_cast<bool>(Tova::Adopt(TovaLocalMessagePortCreate(Tova::MakeString(name).get(), answer, nullptr)));
}

/// The status of a request, and the reply. Without a time-out, waiting for it is a failure.
std::string Ask(const Tova::MessagePort& port, int32_t id, const std::string& data, double timeout = 1000) {
  TovaDataRef reply = nullptr;
  const int status = TovaMessagePortSendRequest(port.get(), id, MakeData(data).get(), timeout, timeout, &reply);
  return std::to_string(status) + (reply ? " " + Contents(Tova::Adopt(reply).get()) : "");
}

std::string ReadAll(int socket) {
  std::string bytes;
  for (char byte; recv(socket, &byte, 1, 0) > 0;) bytes += byte;
  return bytes;
}

TEST(MessagePorts, ARequestGetsItsReply) {
  const RuntimeFolder folder;
  EXPECT_FALSE(Connect(kName));
  const PortServer server(kName, Echo);
  const auto port = Connect(kName);
  EXPECT_EQ(Ask(port, -7, "word"), "0 -7word");
  const std::string large(16 * 1024 * 1024 - 1, 'x');
  EXPECT_EQ(Ask(port, 1, large), "0 1" + large);
  EXPECT_EQ(Ask(port, 1, large + "xx"), "-4");
  EXPECT_EQ(Ask(port, 12, large), "0") << "a reply that is too long is an empty one";
}

TEST(MessagePorts, LieInThePrivateFolderOfTheUser) {
  const TemporaryFolder temporary;
  const Variable runtime("XDG_RUNTIME_DIR", "relative");
  const Variable folder("TMPDIR", temporary.Path().c_str());
  const auto own = temporary.Path() / ("tova-" + std::to_string(geteuid()));
  EXPECT_FALSE(Connect(kName));
  EXPECT_FALSE(std::filesystem::exists(own));
  const PortServer server(kName, Echo);
  EXPECT_TRUE(std::filesystem::is_socket(own / kName));
  EXPECT_EQ(std::filesystem::status(own).permissions(), std::filesystem::perms::owner_all);
  EXPECT_TRUE(Connect(kName));
  chmod(own.c_str(), 0711);
  EXPECT_FALSE(Connect(kName) || CanServe("other")) << "others may look in";
}

TEST(MessagePorts, HaveOneServerAndAFileName) {
  const RuntimeFolder folder;
  for (const std::string& name : {std::string(), std::string(".."), std::string("a/b"), std::string(200, 'n')}) {
    EXPECT_FALSE(CanServe(name) || Connect(name)) << name;
  }
  { const ScriptedPeer dead(kName, {}); }  // leaves its socket
  {
    const PortServer server(kName, Echo);
    EXPECT_FALSE(CanServe(kName));
  }
  EXPECT_FALSE(std::filesystem::exists(folder.File(kName)));
  EXPECT_FALSE(CanServe(std::filesystem::path(folder.Write("file", {1})).filename()));
}

TEST(MessagePorts, AServerThatMisbehavesCostsNoMoreThanTheTimeout) {
  const RuntimeFolder folder;
  const struct {
    std::string reply, status;
  } cases[] = {{"!", "-3"},
               {"", "-3"},
               {"dies", "-3"},
               {Frame(5, "half", 8), "-3"},
               {Frame(5, "half", 8) + "...", "-2"},
               {"...", "-2"},
               {Frame(6, "another") + "...", "-4"},
               {Frame(5, "", 16 * 1024 * 1024 + 1) + "...", "-4"},
               {"garbage garbage...", "-4"},
               {Frame(5, "more") + Frame(5, "than asked for") + "...", "0 more"}};
  for (const auto& c : cases) {
    const ScriptedPeer peer(kName, {c.reply});
    const auto port = Connect(kName);
    EXPECT_EQ(Ask(port, 5, "text", c.status == "-2" ? 0.02 : 1000), c.status) << c.reply;
    EXPECT_EQ(Ask(port, 5, "text"), "-3") << c.reply << ", and is asked again";
  }
  const ScriptedPeer deaf(kName, {"..."});
  EXPECT_EQ(Ask(Connect(kName), 5, std::string(4'000'000, 'x'), 0.02), "-1");
}

TEST(MessagePorts, AClientThatMisbehavesKeepsTheServerFromNobody) {
  const RuntimeFolder folder;
  const LogLines log;
  {
    const PortServer server(kName, Echo);
    const auto half = OpenRaw(kName, connect);
    Write(half.Number(), Frame(1, "ha", 4));
    const auto deaf = OpenRaw(kName, connect);
    for (int i = 0; i < 3; ++i) Write(deaf.Number(), Frame(1, std::string(100'000, 'x')));
    const auto greedy = OpenRaw(kName, connect);
    Write(greedy.Number(), Frame(1, "", 0x7FFFFFFF));
    EXPECT_EQ(ReadAll(greedy.Number()), "");
    EXPECT_EQ(Ask(Connect(kName), 1, "well"), "0 1well");
    Write(half.Number(), "lf" + Frame(2, "two") + Frame(3, ""));
    shutdown(half.Number(), SHUT_WR);
    EXPECT_EQ(ReadAll(half.Number()), Frame(1, "1half") + Frame(2, "2two") + Frame(3, "3"));
  }
  EXPECT_THAT(log.lines, ElementsAre("A message of 2147483647 bytes was refused."));
}

TEST(MessagePorts, OtherUsersAreNotTalkedTo) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become another user";
  const RuntimeFolder folder;
  const PortServer server(kName, Echo);
  chmod(folder.Path().c_str(), 0777);
  chmod(folder.File(kName).c_str(), 0777);
  const pid_t other = fork();
  if (other == 0) {
    if (setresuid(12345, 12345, 12345) != 0 || Connect(kName)) _exit(1);
    const auto client = OpenRaw(kName, connect);
    Write(client.Number(), Frame(1, "text"));
    _exit(client && ReadAll(client.Number()).empty() ? 0 : 2);
  }
  int status = 0;
  waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
}

}  // namespace
