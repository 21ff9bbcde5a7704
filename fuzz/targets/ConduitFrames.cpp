// Frames of message ports. The first byte chooses the side that they come to: even, a conduit gets the rest as its
// client's messages, cut into two sends where the byte says; odd, the library gets it as the conduit's reply.
#include <sys/socket.h>

#include <VornFontTest/ConduitProtocol.hpp>
#include <algorithm>
#include <cstdlib>
#include <mutex>

#include "Answer.h"
#include "Core/RundleConduit.h"
#include "fuzz/Target.h"
#include "support/MessagePorts.h"

namespace {

constexpr const char* kConduit = "fuzz.conduit";
constexpr const char* kEcho = "fuzz.echo";

/// Folders of this run alone: for ports, and for a list of installed fonts that is that of the samples.
struct Surroundings {
  Surroundings() {
    fuzz::SilenceLog();
    const std::string fonts = "<fontconfig><dir>" SAMPLES_FOLDER "</dir></fontconfig>";
    setenv("FONTCONFIG_FILE", runtime.Write("fonts.conf", {fonts.begin(), fonts.end()}).c_str(), 1);
  }
  const test::RuntimeFolder runtime;
};

/// Sends a conduit the messages of a client, who reads no answer until the end.
void AskConduit(std::string_view messages, size_t cut) {
  static conduit::InstalledFonts* const gFonts = new conduit::InstalledFonts;
  static test::PortServer* const gServer = new test::PortServer(kConduit, [](int32_t id, const std::string& message) {
    return test::Contents(conduit::Answer(*gFonts, id, test::MakeData(message).get()).get());
  });
  static_cast<void>(gServer);  // its thread ends with the program
  const Tova::Descriptor client = test::OpenRaw(kConduit, connect);
  fuzz::Check(client.Number() >= 0, "the conduit takes clients");
  for (const std::string_view part : {messages.substr(0, cut), messages.substr(cut)}) {
    if (!part.empty()) test::Write(client.Number(), std::string(part));
  }
  shutdown(client.Number(), SHUT_WR);
  char reply[4096];
  while (recv(client.Number(), reply, sizeof(reply), 0) > 0) continue;  // until the conduit lets the client go
}

/// A server on a thread of its own, which answers whatever it gets with the same bytes and hangs up.
class Echo {
 public:
  Echo() : listener_(test::OpenRaw(kEcho, bind)) {
    std::thread([this] { Serve(); }).detach();
  }
  void SetReply(std::string reply) {
    const std::lock_guard lock(mutex_);
    reply_ = std::move(reply);
  }

 private:
  void Serve() {
    for (char request[4096];;) {
      const Tova::Descriptor client(accept(listener_.Number(), nullptr, nullptr));
      if (recv(client.Number(), request, sizeof(request), 0) <= 0) continue;
      const std::lock_guard lock(mutex_);
      test::Write(client.Number(), reply_);
    }
  }

  const Tova::Descriptor listener_;
  std::mutex mutex_;
  std::string reply_;
};

/// Asks a conduit that answers with these bytes.
void AskWithReply(std::string_view reply) {
  static Echo* const gEcho = new Echo;
  gEcho->SetReply(std::string(reply));
  RundleConduit conduit(Tova::MakeString(kEcho), {.connect = 0});
  const auto file = Tova::Adopt(TovaURLCreateWithFilePath("/a.ttf"));
  Tova::String url;
  const bool found = conduit.SendIsDuplicateFontMessage(file.get(), Tova::MakeString("A").get(), &url);
  fuzz::Check(found || !url, "only a font that was found has a place");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Surroundings gSurroundings;
  if (size == 0) return -1;
  const std::string_view frames(reinterpret_cast<const char*>(data + 1), size - 1);
  if (data[0] % 2 == 0) {
    AskConduit(frames, std::min<size_t>(data[0] / 2, frames.size()));
  } else {
    AskWithReply(frames);
  }
  return 0;
}
