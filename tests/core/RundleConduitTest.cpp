#include <gmock/gmock.h>

#include <VornFontTest/ConduitProtocol.hpp>

#include "Core/RundleConduit.h"
#include "support/MessagePorts.h"
#include "support/Values.h"

namespace {

using namespace test;
using namespace testing;

constexpr const char* kName = "test.conduit";
const std::string kYes = "<plist><dict><key>Result</key><true/></dict></plist>";

TEST(ConduitPort, IsNamedByTheVariablesValue) {
  const std::string base = "veltrin.Vorn.RundleConduit";
  const struct {
    const char* value;
    std::string name;
  } cases[] = {{nullptr, base},
               {"", base},
               {"bar", base + "_bar"},
               {"foo_VALIDATOR_%V", base + "_foo"},
               {"foo__VALIDATOR_%V_rest", base + "_foo_"},
               {"fooVALIDATOR_%Vbar_VALIDATOR_%V", base + "_foo"},
               {"VALIDATOR_%V", base},
               {"_VALIDATOR_%Vrest", base},
               {"0123456789012345678901234567890123456789", base + "_012345678901234567890123456789012345678"},
               {"\xC3\xA9t\xC3\xA9", ""}};
  for (const auto& c : cases) EXPECT_EQ(VornFontTest::ConduitPortName(c.value), c.name);
}

/// A client that never waits for a conduit that is not there.
class ConduitClient : public testing::Test {
 protected:
  /// The result of a query, and the URL of the duplicate where there is one.
  std::string Query() {
    Tova::String url = Tova::MakeString("unset");
    const auto name = Tova::MakeString("A-\u00e9<&>");
    const bool found = conduit_.SendIsDuplicateFontMessage(FileUrl("/a b.ttf").get(), name.get(), &url);
    return (found ? "yes " : "no ") + (url ? std::string(Tova::Text(url)) : "none");
  }

  const RuntimeFolder folder_{};
  const LogLines log_{};
  RundleConduit conduit_{Tova::MakeString(kName), {.connect = 0}};
};

TEST_F(ConduitClient, AsksWithThreeKeys) {
  std::string request;
  const PortServer server(kName, [&](int32_t id, const std::string& data) {
    const auto list = Tova::Adopt(TovaPropertyListCreateWithData(MakeData(data).get(), nullptr));
    request = std::to_string(id) + Description(list.get());
    return kYes;
  });
  EXPECT_EQ(Query(), "yes none");
  EXPECT_EQ(request, "0{FileURLKey: file:///a%20b.ttf, PostscritNameKey: A-\u00e9<&>, WantsDupKey: true}");
}

TEST_F(ConduitClient, TakesNothingButAResultForAnAnswer) {
  std::string reply;
  const PortServer server(kName, [&](int32_t, const std::string&) { return reply; });
  const std::string url = "<key>FileURLKey</key><string>file:///b.ttf</string>";
  const std::pair<std::string, std::string> cases[] = {
      {"<plist><dict><key>Result</key><true/>" + url + "</dict></plist>", "yes file:///b.ttf"},
      {"<plist><dict><key>Result</key><true/><key>FileURLKey</key><true/></dict></plist>", "yes none"},
      {"<plist><dict><key>Result</key><false/>" + url + "</dict></plist>", "no none"},
      {"<plist><dict><key>Result</key><string>true</string></dict></plist>", "no none"},
      {"<plist><dict>" + url + "</dict></plist>", "no none"},
      {"<plist><array><true/></array></plist>", "no none"},
      {"<plist>", "no none"},
      {"", "no none"}};
  for (const auto& [sent, answer] : cases) {
    reply = sent;
    EXPECT_EQ(Query(), answer) << sent;
  }
  EXPECT_TRUE(conduit_.SendMessage(0, nullptr, nullptr)) << "an empty reply is one";
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(ConduitClient, LogsThatThereIsNoConduitUntilOneComes) {
  EXPECT_EQ(Query(), "no none");
  EXPECT_THAT(log_.lines,
              ElementsAre("LaunchRundleConduit couldn't connect to RundleConduit.", "couldn't use RundleConduit."));
  RundleConduit patient(Tova::MakeString(kName), {.connect = 1000});
  bool sent = false;
  std::thread sender([&] { sent = patient.SendMessage(0, nullptr, nullptr); });
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  const PortServer server(kName, [](int32_t, const std::string&) { return kYes; });
  sender.join();
  EXPECT_TRUE(sent);
  EXPECT_EQ(Query(), "yes none");
  EXPECT_THAT(log_.lines, SizeIs(2));
}

TEST_F(ConduitClient, TriesOnceMoreOnlyWhereTheConduitHasGone) {
  const std::string yes = Frame(0, kYes) + "...";
  const struct {
    std::vector<std::string> replies;
    std::string answers;
  } cases[] = {
      {{"", yes}, "yes none"}, {{"", "", yes}, "no none yes none"}, {{"garbage!garbage!", yes}, "no none yes none"}};
  for (const auto& c : cases) {
    const ScriptedPeer peer(kName, c.replies);
    std::string answers = Query();
    if (answers != c.answers) answers += " " + Query();
    EXPECT_EQ(answers, c.answers);
  }
}

// Under ThreadSanitizer, too.
using ConduitThreads = ConduitClient;
TEST_F(ConduitThreads, ShareOneConnectionOrHaveTheirOwn) {
  const PortServer server(kName, [](int32_t, const std::string& data) {
    return data.find("Known") == std::string::npos ? std::string() : kYes;
  });
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (const char* name : {"Known1", "B", "Known2", "D", "Known3", "F", "Known4", "H"}) {
    threads.emplace_back([&, known = std::strlen(name) > 1, name = Tova::MakeString(name)] {
      RundleConduit own(Tova::MakeString(kName), {.connect = 0});
      for (int i = 0; i < 125; ++i) {
        RundleConduit& conduit = i % 2 == 0 ? own : conduit_;
        if (conduit.SendIsDuplicateFontMessage(FileUrl("/x").get(), name.get(), nullptr) == known) ++right;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 1000);
}

}  // namespace
