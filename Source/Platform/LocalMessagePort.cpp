#include "Platform/LocalMessagePort.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <Tova/Tova.hpp>
#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <iterator>

#include "Platform/MessageFrame.h"
#include "Platform/MessagePortSocket.h"
#include "Platform/Paths.h"
#include "Platform/Scalars.h"

namespace Tova {
namespace {

/// Waiting for a chance to accept a client when the system lacks what that takes, in milliseconds.
constexpr int kPauseWithoutResources = 50;

bool TryAgain(int error) { return error == EAGAIN || error == EINTR; }

/// Frees the path for a socket: nothing is there, or a socket without a server, which is removed.
bool FreePath(const std::string& path, const sockaddr_un& address) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0) return errno == ENOENT;
  if (!S_ISSOCK(status.st_mode)) return false;
  const Descriptor probe = MakeStreamSocket();
  return probe && Connect(probe, address) != 0 && errno == ECONNREFUSED && unlink(path.c_str()) == 0;
}

/// Holds the folder of ports against other servers that come or go, while it lives.
Descriptor LockFolder(const std::string& folder) {
  Descriptor lock(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (lock && flock(lock.Number(), LOCK_EX) != 0) lock.Close();
  return lock;
}

/// A socket that listens under the name; path receives where it is.
Descriptor ListenAs(std::string_view name, std::string& path) {
  const auto folder = IsFileName(name) ? MessagePortFolder(MissingFolder::kMake) : std::nullopt;
  if (!folder) return {};
  path = *folder + "/" + std::string(name);
  const auto address = SocketAddress(path);
  const Descriptor lock = LockFolder(*folder);
  if (!address || !lock || !FreePath(path, *address)) return {};
  Descriptor socket = MakeStreamSocket();
  if (!socket || fchmod(socket.Number(), 0600) != 0 ||
      bind(socket.Number(), reinterpret_cast<const sockaddr*>(&*address), sizeof(*address)) != 0) {
    return {};
  }
  if (listen(socket.Number(), SOMAXCONN) == 0) return socket;
  unlink(path.c_str());
  return {};
}

int SocketOption(int descriptor, int option) {
  int value = -1;
  socklen_t length = sizeof(value);
  return getsockopt(descriptor, SOL_SOCKET, option, &value, &length) == 0 ? value : -1;
}

/// How many clients a port keeps; one more makes the one that has been quiet the longest leave. Half of the descriptors
/// of the process, for who answers them needs some too.
size_t MaximumClients() {
  constexpr size_t kMaximumClients = 512;
  rlimit files = {};
  if (getrlimit(RLIMIT_NOFILE, &files) != 0) return kMaximumClients;
  return std::clamp<size_t>(files.rlim_cur / 2, 1, kMaximumClients);
}

bool IsListener(int descriptor) {
  return SocketOption(descriptor, SO_DOMAIN) == AF_UNIX && SocketOption(descriptor, SO_TYPE) == SOCK_STREAM &&
         SocketOption(descriptor, SO_ACCEPTCONN) == 1;
}

}  // namespace

bool MessagePortClient::Attend(TovaMessagePortAnswer answer, void* context) {
  try {
    bool more = reply_.empty() ? Receive() : Send();
    while (reply_.empty() && messages_.size() >= MessageHeader::kLength) {
      const size_t before = messages_.size();
      if (!AnswerNext(answer, context)) return false;
      if (messages_.size() == before) break;  // the rest of the message has not come yet
      more = Send() && more;
    }
    return more;
  } catch (const std::exception&) {  // out of memory: this client's message is what takes it
    return false;
  }
}

bool MessagePortClient::Receive() {
  std::array<char, 64 * 1024> bytes;
  const ssize_t count = recv(socket_.Number(), bytes.data(), bytes.size(), 0);
  if (count < 0) return TryAgain(errno);
  messages_.append(bytes.data(), static_cast<size_t>(count));
  return count > 0;
}

bool MessagePortClient::Send() {
  while (sent_ < reply_.size()) {
    const ssize_t count = send(socket_.Number(), reply_.data() + sent_, reply_.size() - sent_, MSG_NOSIGNAL);
    if (count < 0) return TryAgain(errno);
    sent_ += static_cast<size_t>(count);
  }
  reply_.clear();
  sent_ = 0;
  return true;
}

bool MessagePortClient::AnswerNext(TovaMessagePortAnswer answer, void* context) {
  const auto header = MessageHeader::Read(messages_);
  if (!header.IsAcceptable()) {
    TovaLogError(Format("A message of %u bytes was refused.", {header.length}).get());
    return false;
  }
  if (messages_.size() - MessageHeader::kLength < header.length) return true;
  const std::string_view bytes = std::string_view(messages_).substr(MessageHeader::kLength, header.length);
  const Data data = Adopt(static_cast<TovaDataRef>(new TovaData(std::string(bytes))));
  const Data reply = Adopt(answer(header.id, data.get(), context));
  std::string_view text = reply ? std::string_view(reply.get()->bytes) : std::string_view();
  if (text.size() > kTovaMessagePortMaximumLength) text = {};
  reply_ = MakeMessageFrame(header.id, text);
  messages_.erase(0, MessageHeader::kLength + header.length);
  return true;
}

}  // namespace Tova

TovaLocalMessagePort::~TovaLocalMessagePort() {
  if (!path_.empty()) unlink(path_.c_str());
}

size_t TovaLocalMessagePort::Hash(int /*depth*/) const { return std::hash<const void*>()(this); }

void TovaLocalMessagePort::Describe(std::string& out, int /*depth*/) const { out += "<local message port>"; }

bool TovaLocalMessagePort::Serve(int stop) const {
  std::vector<pollfd> polled;
  while (true) {
    polled = {{stop, POLLIN, 0}, {listener_.Number(), POLLIN, 0}};
    for (const Tova::MessagePortClient& client : clients_) polled.push_back(client.Polled());
    if (poll(polled.data(), polled.size(), -1) < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (polled[0].revents) return true;
    AttendClients(polled);
    if (polled[1].revents && !AcceptClient()) return false;
  }
}

void TovaLocalMessagePort::AttendClients(const std::vector<pollfd>& polled) const {
  std::vector<Tova::MessagePortClient> quiet;
  std::vector<Tova::MessagePortClient> heard;
  for (size_t i = 0; i < clients_.size(); ++i) {
    if (!polled[i + 2].revents) {
      quiet.push_back(std::move(clients_[i]));
    } else if (clients_[i].Attend(answer_, context_)) {
      heard.push_back(std::move(clients_[i]));
    }
  }
  quiet.insert(quiet.end(), std::move_iterator(heard.begin()), std::move_iterator(heard.end()));
  clients_ = std::move(quiet);
}

bool TovaLocalMessagePort::AcceptClient() const {
  Tova::Descriptor socket(accept4(listener_.Number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  const int error = socket ? 0 : errno;
  if (error == EBADF || error == EINVAL || error == ENOTSOCK || error == EOPNOTSUPP) return false;
  const bool lacksResources = error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
  if (!clients_.empty() && (lacksResources || clients_.size() >= Tova::MaximumClients())) {
    clients_.erase(clients_.begin());
  } else if (lacksResources) {
    poll(nullptr, 0, Tova::kPauseWithoutResources);
  }
  if (socket && Tova::IsPeerOfSameUser(socket)) clients_.emplace_back(std::move(socket));
  return true;
}

TovaLocalMessagePortRef TovaLocalMessagePortCreate(TovaStringRef name, TovaMessagePortAnswer answer, void* context) {
  if (!answer) return nullptr;
  return Tova::Guarded([&]() -> TovaLocalMessagePortRef {
    std::string path;
    Tova::Descriptor listener = Tova::ListenAs(Tova::Text(name), path);
    return listener ? new TovaLocalMessagePort(std::move(listener), path, answer, context) : nullptr;
  });
}

TovaLocalMessagePortRef TovaLocalMessagePortCreateWithSocket(int descriptor, TovaMessagePortAnswer answer,
                                                             void* context) {
  if (!answer || !Tova::IsListener(descriptor) || fcntl(descriptor, F_SETFD, FD_CLOEXEC) != 0 ||
      fcntl(descriptor, F_SETFL, O_NONBLOCK) != 0) {
    return nullptr;
  }
  return Tova::Guarded([&] { return new TovaLocalMessagePort(Tova::Descriptor(descriptor), "", answer, context); });
}

bool TovaLocalMessagePortServe(TovaLocalMessagePortRef port, int stop) {
  return port && Tova::Guarded([&] { return port->Serve(stop); });
}
