#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>

#include <VornFontTest/ConduitProtocol.hpp>

#include "Run/ConduitForRun.h"
#include "cli/Program.h"
#include "support/InstalledFolder.h"

namespace {

using namespace test;
using namespace testing;

constexpr const char* kTest = "veltrin.duplicates";
constexpr const char* kFinding = "Another font with the PostScript name Some-Name is installed";

class DuplicatesOption : public testing::Test {
 protected:
  Outcome Test(std::vector<std::string> arguments) const {
    return RunProgram(std::move(arguments), Destination::kFile,
                      {"FONTCONFIG_FILE=" + folder_.File("fonts.conf"), "XDG_RUNTIME_DIR=" + runtime_.File("")});
  }

  const RuntimeFolder runtime_{};
  const InstalledFolder folder_{};
  const std::string installed_ = folder_.WriteFont("fonts/font.ttf", "Some-Name");
  const std::string copy_ = folder_.WriteFont("copy.ttf", "Some-Name");
};

TEST_F(DuplicatesOption, StartsAConduitForTheRunAndEndsIt) {
  const Outcome found = Test({"--duplicates", "-t", kTest, copy_});
  EXPECT_EQ(found.status, 1) << found.err;
  EXPECT_THAT(found.out, HasSubstr(kFinding));
  EXPECT_EQ(Test({"--duplicates", "-t", kTest, installed_}).status, 0);
  EXPECT_TRUE(std::filesystem::is_empty(runtime_.Path())) << "the port is gone";
}

TEST_F(DuplicatesOption, UsesTheConduitThatRuns) {
  const PortServer conduit("veltrin.Vorn.RundleConduit", [](int32_t, const std::string&) {
    return "<plist><dict><key>Result</key><true/></dict></plist>";
  });
  EXPECT_THAT(Test({"--duplicates", "-t", kTest, installed_}).out, HasSubstr(kFinding));
}

TEST_F(DuplicatesOption, FailsTheRunWhereNoConduitCanBeHad) {
  std::filesystem::remove_all(runtime_.Path());
  const Outcome outcome = Test({"--duplicates", copy_});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("vorn-font-test: --duplicates: the conduit does not start"));
  EXPECT_EQ(Test({"--duplicates", "-t", "*.cmap.*", copy_}).status, 0) << "where nothing asks it, none is needed";
}

TEST_F(DuplicatesOption, AConduitThatEndsBeforeItsTimeIsNoticed) {
  const Variable suffix("XT_SERVICE_NAME_SUFFIX", nullptr);
  tool::ConduitForRun conduit;
  conduit.Ensure();
  conduit.RequireAlive();
  const auto port = OpenRaw(VornFontTest::ConduitPortName(std::getenv("XT_SERVICE_NAME_SUFFIX")), connect);
  ucred server = {};
  socklen_t length = sizeof(server);
  ASSERT_EQ(getsockopt(port.Number(), SOL_SOCKET, SO_PEERCRED, &server, &length), 0);
  kill(server.pid, SIGKILL);
  siginfo_t end;
  waitid(P_PID, static_cast<id_t>(server.pid), &end, WEXITED | WNOWAIT);
  EXPECT_THROW(conduit.RequireAlive(), std::runtime_error);
}

TEST_F(DuplicatesOption, IsNeededForTheTest) {
  EXPECT_THAT(Test({"--list-tests"}).out, Not(HasSubstr(kTest)));
  EXPECT_THAT(Test({"--list-tests", "--duplicates"}).out, HasSubstr(kTest));
  EXPECT_THAT(Test({"-t", kTest, copy_}).err, HasSubstr("'veltrin.duplicates' runs with --duplicates only"));
}

}  // namespace
