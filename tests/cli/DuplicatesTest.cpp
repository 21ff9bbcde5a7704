#include <gmock/gmock.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <VornFontTest/ConduitProtocol.hpp>
#include <filesystem>

#include "ConduitForRun.h"
#include "Platform/Descriptor.h"
#include "cli/Program.h"
#include "support/InstalledFolder.h"
#include "support/MessagePorts.h"

namespace {

using namespace test;
using namespace testing;

constexpr const char* kTest = "veltrin.duplicates";
constexpr const char* kFinding = "Duplicates: A font with the PostScript name Some-Name is already installed.";

class DuplicatesOption : public testing::Test {
 protected:
  Outcome Run(std::vector<std::string> arguments) const {
    return RunProgram(std::move(arguments), Destination::kFile,
                      {"FONTCONFIG_FILE=" + folder_.Configuration(), "XDG_RUNTIME_DIR=" + runtime_.File("")});
  }

  const RuntimeFolder runtime_;
  const InstalledFolder folder_;
  const std::string installed_ = folder_.Write("fonts/font.ttf", "Some-Name");
  const std::string copy_ = folder_.Write("copy.ttf", "Some-Name");
};

TEST_F(DuplicatesOption, StartsAConduitForTheRunAndEndsIt) {
  const Outcome found = Run({"--duplicates", "-t", kTest, copy_});
  EXPECT_EQ(found.status, 1) << found.err;
  EXPECT_THAT(found.out, HasSubstr(kFinding));
  EXPECT_EQ(Run({"--duplicates", "-t", kTest, installed_}).status, 0);
  EXPECT_THAT(Run({"--duplicates", "-s", "major", installed_, copy_}).out, HasSubstr(kFinding));
  EXPECT_TRUE(std::filesystem::is_empty(runtime_.File(""))) << "the port is gone";
}

TEST_F(DuplicatesOption, UsesTheConduitThatRuns) {
  const PortServer conduit("veltrin.Vorn.RundleConduit", [](int32_t, std::string_view) {
    return "<plist><dict><key>Result</key><true/></dict></plist>";
  });
  EXPECT_THAT(Run({"--duplicates", "-t", kTest, installed_}).out, HasSubstr(kFinding));
}

TEST_F(DuplicatesOption, FailsTheRunWhereNoConduitCanBeHad) {
  std::filesystem::remove_all(runtime_.File(""));
  const Outcome outcome = Run({"--duplicates", copy_});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("vorn-font-test: --duplicates: the conduit does not start"));
  EXPECT_EQ(Run({"--duplicates", "-t", "*.cmap.*", copy_}).status, 0) << "where nothing asks it, none is needed";
}

TEST_F(DuplicatesOption, AConduitThatEndsBeforeItsTimeIsNoticed) {
  const Variable suffix("XT_SERVICE_NAME_SUFFIX", nullptr);
  const Variable configuration("FONTCONFIG_FILE", folder_.Configuration().c_str());
  tool::ConduitForRun conduit;
  conduit.RequireAlive();
  conduit.Ensure();
  conduit.RequireAlive();
  const Tova::Descriptor client(ConnectRaw(VornFontTest::ConduitPortName(std::getenv("XT_SERVICE_NAME_SUFFIX"))));
  ucred server = {};
  socklen_t length = sizeof(server);
  ASSERT_EQ(getsockopt(client.Number(), SOL_SOCKET, SO_PEERCRED, &server, &length), 0);
  kill(server.pid, SIGKILL);
  siginfo_t end;
  waitid(P_PID, static_cast<id_t>(server.pid), &end, WEXITED | WNOWAIT);
  EXPECT_THROW(conduit.RequireAlive(), std::runtime_error);
}

TEST_F(DuplicatesOption, IsNeededForTheTest) {
  EXPECT_THAT(Run({copy_}).out, Not(HasSubstr(kFinding)));
  EXPECT_THAT(Run({"--list-tests"}).out, Not(HasSubstr(kTest)));
  EXPECT_THAT(Run({"--list-tests", "--duplicates"}).out, HasSubstr(kTest));
  const Outcome outcome = Run({"-t", kTest, copy_});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--test: 'veltrin.duplicates' runs with --duplicates only"));
}

}  // namespace
