#include "support/MessagePorts.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

#include "Platform/Descriptor.h"

namespace test {
namespace {

std::string_view Contents(TovaDataRef data) {
  return {reinterpret_cast<const char*>(TovaDataGetBytes(data)), TovaDataGetLength(data)};
}

sockaddr_un AddressOf(const std::string& name) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, (std::string(std::getenv("XDG_RUNTIME_DIR")) + "/" + name).c_str(),
               sizeof(address.sun_path) - 1);
  return address;
}

}  // namespace

Variable::Variable(std::string name, const char* value) : name_(std::move(name)) {
  const char* before = std::getenv(name_.c_str());
  wasSet_ = before;
  before_ = before ? before : "";
  Set(value);
}

Variable::~Variable() { Set(wasSet_ ? before_.c_str() : nullptr); }

void Variable::Set(const char* value) const { value ? setenv(name_.c_str(), value, 1) : unsetenv(name_.c_str()); }

LogLines::LogLines() {
  TovaLogErrorSetSink(
      [](TovaStringRef text, void* context) {
        auto* log = static_cast<LogLines*>(context);
        const std::lock_guard lock(log->mutex_);
        log->lines_.emplace_back(Tova::Text(text));
      },
      this);
}

LogLines::~LogLines() { TovaLogErrorSetSink(nullptr, nullptr); }

std::vector<std::string> LogLines::Get() const {
  const std::lock_guard lock(mutex_);
  return lines_;
}

PortServer::PortServer(const std::string& name, Answer answer) : answer_(std::move(answer)) {
  const auto tAnswer = [](int32_t id, TovaDataRef data, void* context) {
    return MakeData((*static_cast<Answer*>(context))(id, Contents(data))).Detach();
  };
  port_ = Tova::Adopt(TovaLocalMessagePortCreate(Tova::MakeString(name).get(), tAnswer, &answer_));
  if (!port_ || pipe(stop_) != 0) throw std::runtime_error("no port " + name);
  thread_ = std::thread([this] { TovaLocalMessagePortServe(port_.get(), stop_[0]); });
}

PortServer::~PortServer() {
  close(stop_[1]);
  thread_.join();
  close(stop_[0]);
}

ScriptedPeer::ScriptedPeer(const std::string& name, std::vector<Script> scripts) {
  const sockaddr_un address = AddressOf(name);
  unlink(address.sun_path);
  listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 || listen(listener_, 8) != 0) {
    throw std::runtime_error("no port " + name);
  }
  thread_ = std::thread([this, scripts = std::move(scripts)] {
    for (const Script& script : scripts) {
      const Tova::Descriptor client(accept(listener_, nullptr, nullptr));
      if (!SetClient(client.Number())) return;
      script(client.Number());
      SetClient(-1);
    }
  });
}

ScriptedPeer::~ScriptedPeer() {
  shutdown(listener_, SHUT_RDWR);  // wakes an accept
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    if (client_ >= 0) shutdown(client_, SHUT_RDWR);  // wakes a stall
  }
  thread_.join();
  close(listener_);
}

bool ScriptedPeer::SetClient(int socket) {
  const std::lock_guard lock(mutex_);
  client_ = socket;
  return socket >= 0 && !ends_;
}

void ScriptedPeer::Stall(int socket) {
  pollfd polled = {socket, POLLRDHUP, 0};
  poll(&polled, 1, -1);
}

std::string ScriptedPeer::Read(int socket) {
  uint8_t header[8];
  if (recv(socket, header, sizeof(header), MSG_WAITALL) != sizeof(header)) return "";
  std::string bytes(static_cast<size_t>(header[6] << 8 | header[7]), '\0');
  recv(socket, bytes.data(), bytes.size(), MSG_WAITALL);
  return bytes;
}

void ScriptedPeer::Write(int socket, std::string_view bytes) {
  if (send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) throw std::runtime_error("nobody reads");
}

std::string Frame(int32_t id, std::string_view data, std::optional<uint32_t> length) {
  std::string frame;
  for (const uint32_t word : {static_cast<uint32_t>(id), length.value_or(static_cast<uint32_t>(data.size()))}) {
    for (const int shift : {24, 16, 8, 0}) frame += static_cast<char>(word >> shift);
  }
  return frame.append(data);
}

int ConnectRaw(const std::string& name) {
  const sockaddr_un address = AddressOf(name);
  const int client = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
    throw std::runtime_error("no port " + name);
  }
  return client;
}

Tova::Data MakeData(std::string_view bytes) {
  return Tova::Adopt(TovaDataCreate(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()));
}

Tova::MessagePort Connect(const std::string& name) {
  return Tova::Adopt(TovaMessagePortCreateRemote(Tova::MakeString(name).get()));
}

}  // namespace test
