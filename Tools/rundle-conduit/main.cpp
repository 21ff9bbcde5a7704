#include <signal.h>
#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <syslog.h>
#include <unistd.h>

#include <Tova/Tova.hpp>
#include <VornFontTest/ConduitProtocol.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <initializer_list>
#include <stdexcept>
#include <string>

#include "Answer.h"
#include "InstalledFonts.h"
#include "Options.h"

namespace {

enum Status { kEnded = 0, kUsage = 2, kFailed = 3 };

/// The first descriptor that a service manager passes (sd_listen_fds(3)).
constexpr int kFirstPassedSocket = 3;

/// A descriptor that is readable once the program is to end: told to by a signal or, when attached, left by whoever
/// holds the other end of standard input.
int MakeStopDescriptor(bool attached) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals, number);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  const int signalled = signalfd(-1, &signals, SFD_CLOEXEC);
  const int stop = epoll_create1(EPOLL_CLOEXEC);
  epoll_event readable = {.events = EPOLLIN, .data = {}};
  epoll_event hungUp = {.events = 0, .data = {}};
  if (epoll_ctl(stop, EPOLL_CTL_ADD, signalled, &readable) != 0) throw std::runtime_error("signals cannot be awaited");
  if (attached && epoll_ctl(stop, EPOLL_CTL_ADD, STDIN_FILENO, &hungUp) != 0) {
    throw std::runtime_error("--attached: standard input is no pipe");
  }
  return stop;
}

/// Whether a service manager passes one socket to this very process.
bool IsSocketPassed() {
  const char* process = std::getenv("LISTEN_PID");
  const char* count = std::getenv("LISTEN_FDS");
  return process && count && process == std::to_string(getpid()) && std::string(count) == "1";
}

TovaDataRef AnswerMessage(int32_t messageId, TovaDataRef message, void* fonts) {
  try {
    return conduit::Answer(*static_cast<conduit::InstalledFonts*>(fonts), messageId, message).Detach();
  } catch (const std::exception& error) {
    TovaLogError(Tova::Format("A request could not be answered: %s.", {error.what()}).get());
    return nullptr;
  }
}

Tova::LocalMessagePort MakePort(const std::string& name, conduit::InstalledFonts& fonts) {
  if (name.empty() && IsSocketPassed()) {
    auto port = Tova::Adopt(TovaLocalMessagePortCreateWithSocket(kFirstPassedSocket, AnswerMessage, &fonts));
    if (!port) throw std::runtime_error("what the service manager passes is no listening Unix-domain stream socket");
    return port;
  }
  const std::string usual = VornFontTest::ConduitPortName(std::getenv(VornFontTest::kConduitSuffixVariable));
  const std::string& wanted = name.empty() ? usual : name;
  auto port = Tova::Adopt(TovaLocalMessagePortCreate(Tova::MakeString(wanted).get(), AnswerMessage, &fonts));
  if (!port) throw std::runtime_error("the port '" + wanted + "' is served already, or cannot be made");
  return port;
}

int Serve(const conduit::Options& options) {
  openlog("rundle-conduit", LOG_PID | (options.verbose ? LOG_PERROR : 0), LOG_USER);
  const int stop = MakeStopDescriptor(options.attached);
  conduit::InstalledFonts fonts;
  const Tova::LocalMessagePort port = MakePort(options.port, fonts);
  if (options.attached) {
    std::puts("ready");
    std::fflush(stdout);
  }
  if (!TovaLocalMessagePortServe(port.get(), stop)) throw std::runtime_error("the port can be served no longer");
  return kEnded;
}

}  // namespace

int main(int argc, char** argv) {
  signal(SIGPIPE, SIG_IGN);
  try {
    const conduit::Options options = conduit::ParseCommandLine(argc, argv);
    if (options.answer.empty()) return Serve(options);
    return std::fputs(options.answer.c_str(), stdout) >= 0 && std::fflush(stdout) == 0 ? kEnded : kFailed;
  } catch (const conduit::UsageError& error) {
    std::fprintf(stderr, "rundle-conduit: %s\nrundle-conduit: try 'rundle-conduit --help'\n", error.what());
    return kUsage;
  } catch (const std::exception& error) {
    TovaLogError(Tova::Adopt(TovaStringCreateWithCString(error.what())).get());
    std::fprintf(stderr, "rundle-conduit: %s\n", error.what());
    return kFailed;
  }
}
