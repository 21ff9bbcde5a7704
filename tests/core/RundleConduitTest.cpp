#include <gmock/gmock.h>

#include <VornFontTest/ConduitProtocol.hpp>
#include <atomic>
#include <chrono>

#include "Core/RundleConduit.h"
#include "support/MessagePorts.h"
#include "support/Values.h"

namespace {

using namespace test;
using namespace testing;
using VornFontTest::ConduitPortName;

constexpr const char* kName = "test.conduit";
constexpr double kNever = 1000;  // seconds; what waits for this has failed
const std::string kBase = "veltrin.Vorn.RundleConduit";
const std::string kYes = "<plist><dict><key>Result</key><true/></dict></plist>";

TEST(ConduitPort, IsNamedByTheVariablesValue) {
  const struct {
    const char* value;
    std::string name;
  } cases[] = {{nullptr, kBase},
               {"", kBase},
               {"bar", kBase + "_bar"},
               {"foo_VALIDATOR_%V", kBase + "_foo"},
               {"foo__VALIDATOR_%V_rest", kBase + "_foo_"},
               {"fooVALIDATOR_%Vbar_VALIDATOR_%V", kBase + "_foo"},
               {"VALIDATOR_%V", kBase},
               {"_VALIDATOR_%Vrest", kBase},
               {"foo_VALIDATOR_", kBase + "_foo_VALIDATOR_"},
               {"0123456789012345678901234567890123456789", kBase + "_012345678901234567890123456789012345678"},
               {"\xC3\xA9t\xC3\xA9", ""}};
  for (const auto& c : cases) EXPECT_EQ(ConduitPortName(c.value), c.name);
  EXPECT_EQ(ConduitPortName(std::string(100, 'x').c_str()).size(), 66u);
}

TEST(ConduitPort, HasItsTimeouts) {
  const RundleConduitLimits limits;
  EXPECT_EQ(limits.connect, 10);
  EXPECT_EQ(limits.send, 20);
  EXPECT_EQ(limits.receive, 60);
}

/// A client of a port in a folder of its own, which never waits for one that is not there.
class ConduitClient : public testing::Test {
 protected:
  bool Send() { return conduit_.SendMessage(0, MakeData("request").get(), nullptr); }
  /// The result of a query, and the URL of the duplicate where there is one.
  std::string Query() {
    Tova::String url = Tova::MakeString("unset");
    const bool found = conduit_.SendIsDuplicateFontMessage(FileUrl("/a b.ttf").get(), name_.get(), &url);
    return (found ? "yes " : "no ") + (url ? std::string(Tova::Text(url)) : "none");
  }
  static ScriptedPeer::Script Replying(const std::string& bytes) {
    return [=](int socket) {
      ScriptedPeer::Read(socket);
      ScriptedPeer::Write(socket, bytes);
      ScriptedPeer::Stall(socket);
    };
  }
  static void Die(int socket) { ScriptedPeer::Read(socket); }

  const RuntimeFolder folder_;
  const LogLines log_;
  const Tova::String name_ = Tova::MakeString("A-\u00e9<&>");
  RundleConduit conduit_{Tova::MakeString(kName), {.connect = 0, .send = kNever, .receive = kNever}};
};

TEST_F(ConduitClient, AsksWithThreeKeys) {
  std::string request;
  const PortServer server(kName, [&](int32_t id, std::string_view data) {
    request = std::to_string(id) +
              Description(Tova::Adopt(TovaPropertyListCreateWithData(MakeData(data).get(), nullptr)).get());
    return kYes;
  });
  EXPECT_EQ(Query(), "yes none");
  EXPECT_EQ(request, "0{FileURLKey: file:///a%20b.ttf, PostscritNameKey: A-\u00e9<&>, WantsDupKey: true}");
  EXPECT_TRUE(conduit_.SendIsDuplicateFontMessage(FileUrl("/x").get(), name_.get(), nullptr));
  EXPECT_THAT(request, EndsWith("WantsDupKey: false}"));
}

TEST_F(ConduitClient, TakesNothingButAResultForAnAnswer) {
  std::string reply;
  const PortServer server(kName, [&](int32_t, std::string_view) { return reply; });
  const struct {
    std::string reply;
    const char* answer;
  } cases[] = {
      {"<dict><key>Result</key><true/><key>FileURLKey</key><string>file:///b.ttf</string></dict>", "yes file:///b.ttf"},
      {"<dict><key>Result</key><true/><key>FileURLKey</key><true/></dict>", "yes none"},
      {"<dict><key>Result</key><false/><key>FileURLKey</key><string>file:///b.ttf</string></dict>", "no none"},
      {"<dict><key>Result</key><string>true</string></dict>", "no none"},
      {"<dict><key>FileURLKey</key><string>file:///b.ttf</string></dict>", "no none"},
      {"<array><true/></array>", "no none"},
      {"<dict>", "no none"}};
  for (const auto& c : cases) {
    reply = "<plist>" + c.reply + "</plist>";
    EXPECT_EQ(Query(), c.answer) << reply;
  }
  reply = "";
  EXPECT_EQ(Query(), "no none") << "an empty reply";
  EXPECT_TRUE(Send());
  EXPECT_THAT(log_.Get(), IsEmpty());
}

TEST_F(ConduitClient, WithoutAConduitLogsAndAnswersNo) {
  EXPECT_EQ(Query(), "no none");
  EXPECT_THAT(log_.Get(),
              ElementsAre("LaunchRundleConduit couldn't connect to RundleConduit.", "couldn't use RundleConduit."));
  conduit_.Launch();
  EXPECT_THAT(log_.Get(), SizeIs(3));
  const PortServer server(kName, [](int32_t, std::string_view) { return kYes; });
  EXPECT_EQ(Query(), "yes none");
}

TEST_F(ConduitClient, WaitsForAConduitThatIsAboutToCome) {
  RundleConduit patient(Tova::MakeString(kName), {.connect = kNever, .send = kNever, .receive = kNever});
  bool sent = false;
  std::thread sender([&] { sent = patient.SendMessage(0, nullptr, nullptr); });
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  const PortServer server(kName, [](int32_t, std::string_view) { return ""; });
  sender.join();
  EXPECT_TRUE(sent);
  EXPECT_THAT(log_.Get(), IsEmpty());
}

TEST_F(ConduitClient, TriesOnceMoreWhereTheConduitHasGone) {
  const ScriptedPeer peer(kName, {Die, Replying(Frame(0, kYes))});
  EXPECT_EQ(Query(), "yes none");
}

TEST_F(ConduitClient, TriesTwiceAtMost) {
  const ScriptedPeer peer(kName, {Die, Die, Replying(Frame(0, kYes))});
  EXPECT_EQ(Query(), "no none");
  EXPECT_EQ(Query(), "yes none") << "with a third connection";
}

TEST_F(ConduitClient, DoesNotTryAgainAfterAnyOtherFailure) {
  const ScriptedPeer peer(kName, {Replying("garbage!garbage!"), Replying(Frame(0, kYes))});
  EXPECT_FALSE(Send());
  EXPECT_EQ(Query(), "yes none") << "with a connection of its own";
  EXPECT_THAT(log_.Get(), IsEmpty());
}

// Under ThreadSanitizer, too.
using ConduitThreads = ConduitClient;
TEST_F(ConduitThreads, ShareOneConnection) {
  const PortServer server(kName, [](int32_t, std::string_view data) {
    return data.find("-known") == std::string_view::npos ? std::string() : kYes;
  });
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (const char* name : {"A-known", "B", "C-known", "D", "E-known", "F", "G-known", "H"}) {
    threads.emplace_back([&, name] {
      const bool known = std::string_view(name).size() > 1;
      for (int i = 0; i < 125; ++i) {
        const auto text = Tova::MakeString(name);
        if (conduit_.SendIsDuplicateFontMessage(FileUrl("/x").get(), text.get(), nullptr) == known) ++right;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 1000);
}

TEST_F(ConduitClient, KeepsItsConnectionAndReconnectsAfterARestart) {
  {
    const ScriptedPeer peer(kName, {[](int socket) {
                              for (int i = 0; i < 3; ++i) {
                                ScriptedPeer::Read(socket);
                                ScriptedPeer::Write(socket, Frame(0, kYes));
                              }
                            }});
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(Send());
  }
  const ScriptedPeer successor(kName, {Replying(Frame(0, kYes))});
  EXPECT_EQ(Query(), "yes none");
}

}  // namespace
