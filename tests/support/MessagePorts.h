#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <Tova/Tova.hpp>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "Platform/Descriptor.h"
#include "support/TemporaryFolder.h"

namespace test {

/// Sets an environment variable, or unsets it with null, and unsets it at the end.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) { value ? setenv(name, value, 1) : unsetenv(name); }
  ~Variable() { unsetenv(name_); }

 private:
  const char* name_;
};

/// An empty $XDG_RUNTIME_DIR.
struct RuntimeFolder : TemporaryFolder {
  Variable variable{"XDG_RUNTIME_DIR", Path().c_str()};
};

/// The lines that go to the system log while this lives; to be read while nobody logs.
struct LogLines {
  LogLines() { TovaLogErrorSetSink(&LogLines::Add, this); }
  ~LogLines() { TovaLogErrorSetSink(nullptr, nullptr); }
  static void Add(TovaStringRef line, void* log) { static_cast<LogLines*>(log)->lines.emplace_back(Tova::Text(line)); }
  std::vector<std::string> lines;
};

inline Tova::Data MakeData(std::string_view bytes) {
  return Tova::Adopt(TovaDataCreate(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()));
}

inline std::string Contents(TovaDataRef data) {
  return {reinterpret_cast<const char*>(TovaDataGetBytes(data)), TovaDataGetLength(data)};
}

/// A server of a message port on a thread of its own, where its answers are made.
class PortServer {
 public:
  using Answer = std::function<std::string(int32_t id, const std::string& data)>;
  PortServer(const char* name, Answer answer) : answer_(std::move(answer)) {
    const auto call = [](int32_t id, TovaDataRef data, void* context) {
      return MakeData((*static_cast<Answer*>(context))(id, Contents(data))).Detach();
    };
    port_ = Tova::Adopt(TovaLocalMessagePortCreate(Tova::MakeString(name).get(), call, &answer_));
    if (!port_ || pipe(stop_) != 0) throw std::runtime_error("no port");
    thread_ = std::thread([this] { TovaLocalMessagePortServe(port_.get(), stop_[0]); });
  }
  ~PortServer() {
    close(stop_[1]);
    thread_.join();
    close(stop_[0]);
  }

 private:
  Answer answer_;
  Tova::LocalMessagePort port_;
  int stop_[2];
  std::thread thread_;
};

/// A socket at a port in $XDG_RUNTIME_DIR past the library: bind or connect says how.
inline Tova::Descriptor OpenRaw(const std::string& name, int (*how)(int, const sockaddr*, socklen_t)) {
  sockaddr_un address = {AF_UNIX, ""};
  const std::string path = std::getenv("XDG_RUNTIME_DIR") + ("/" + name);
  std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
  if (how == bind) unlink(path.c_str());
  Tova::Descriptor opened(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (how(opened.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) opened.Close();
  if (how == bind) listen(opened.Number(), 8);
  return opened;
}

/// A message as it is sent; length is stated in place of that of the data.
inline std::string Frame(int32_t id, const std::string& data, uint32_t length) {
  std::string frame;
  for (const uint32_t word : {static_cast<uint32_t>(id), length}) {
    for (const int shift : {24, 16, 8, 0}) frame += static_cast<char>(word >> shift);
  }
  return frame + data;
}
inline std::string Frame(int32_t id, const std::string& data) {
  return Frame(id, data, static_cast<uint32_t>(data.size()));
}
inline void Write(int socket, const std::string& bytes) { send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL); }

/// A server that misbehaves: of each connection in turn it reads something, unless the reply is "!", sends the reply,
/// and then waits until the client goes when the reply ends in "...", which is not sent.
class ScriptedPeer {
 public:
  ScriptedPeer(const char* name, std::vector<std::string> replies)
      : listener_(OpenRaw(name, bind)), thread_([this, replies = std::move(replies)] {
          for (const std::string& reply : replies) Play(reply);
        }) {}
  ~ScriptedPeer() {
    ends_ = true;
    shutdown(listener_.Number(), SHUT_RDWR);  // wakes an accept
    thread_.join();
  }

 private:
  void Play(std::string reply) {
    const Tova::Descriptor client(accept(listener_.Number(), nullptr, nullptr));
    if (!client || reply == "!") return;
    char bytes[4096];
    if (recv(client.Number(), bytes, sizeof(bytes), 0) <= 0) return;
    const bool stays = reply.ends_with("...");
    Write(client.Number(), reply.substr(0, reply.size() - (stays ? 3 : 0)));
    for (pollfd polled = {client.Number(), POLLRDHUP, 0}; stays && !ends_ && poll(&polled, 1, 1) == 0;) {
    }
  }

  Tova::Descriptor listener_;
  std::atomic<bool> ends_ = false;
  std::thread thread_;
};

}  // namespace test
