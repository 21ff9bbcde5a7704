#include "Platform/MessagePort.h"

#include <poll.h>
#include <sys/socket.h>

#include <Tova/Tova.hpp>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <functional>

#include "Platform/MessageFrame.h"
#include "Platform/MessagePortSocket.h"
#include "Platform/Paths.h"
#include "Platform/Scalars.h"

namespace Tova {
namespace {

using Status = TovaMessagePortStatus;

/// A moment by which something must be done.
class Deadline {
 public:
  explicit Deadline(double seconds)
      : end_(Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(
                                std::isnan(seconds) ? 0 : std::clamp(seconds, 0.0, kLongest)))) {}
  /// What is left, as poll takes it, rounded up.
  int Milliseconds() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now());
    return static_cast<int>(std::max<int64_t>(left.count(), 0));
  }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr double kLongest = 1e6;  // seconds; in milliseconds, it fits an int
  Clock::time_point end_;
};

/// Waits until the socket is ready for the events; late is the answer when that takes too long.
Status Await(int socket, short events, const Deadline& deadline, Status late) {
  while (true) {
    pollfd polled = {socket, events, 0};
    const int count = poll(&polled, 1, deadline.Milliseconds());
    if (count > 0) return kTovaMessagePortSuccess;
    if (count == 0) return late;
    if (errno != EINTR) return kTovaMessagePortTransportError;
  }
}

/// What the errno of a send or a receive means; success: nothing, try again once the socket is ready.
Status StatusOfError(int error) {
  if (error == EAGAIN || error == EINTR) return kTovaMessagePortSuccess;
  return error == EPIPE || error == ECONNRESET ? kTovaMessagePortIsInvalid : kTovaMessagePortTransportError;
}

Status Send(int socket, std::string_view bytes, double timeout) {
  const Deadline deadline(timeout);
  while (!bytes.empty()) {
    const ssize_t count = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count >= 0) {
      bytes.remove_prefix(static_cast<size_t>(count));
      continue;
    }
    Status status = StatusOfError(errno);
    if (status == kTovaMessagePortSuccess) status = Await(socket, POLLOUT, deadline, kTovaMessagePortSendTimeout);
    if (status != kTovaMessagePortSuccess) return status;
  }
  return kTovaMessagePortSuccess;
}

/// Makes bytes exactly length long with what comes. Memory grows with what has come, not with what was promised.
Status Receive(int socket, size_t length, const Deadline& deadline, std::string& bytes) {
  constexpr size_t kStep = 64 * 1024;
  bytes.clear();
  for (size_t filled = 0; filled < length;) {
    bytes.resize(std::min(length, filled + kStep));
    const ssize_t count = recv(socket, bytes.data() + filled, bytes.size() - filled, 0);
    if (count == 0) return kTovaMessagePortIsInvalid;
    if (count > 0) {
      filled += static_cast<size_t>(count);
      continue;
    }
    Status status = StatusOfError(errno);
    if (status == kTovaMessagePortSuccess) status = Await(socket, POLLIN, deadline, kTovaMessagePortReceiveTimeout);
    if (status != kTovaMessagePortSuccess) return status;
  }
  return kTovaMessagePortSuccess;
}

/// Whether the server is silent, as it must be between requests: it has neither gone nor said what nobody asked.
bool IsIdle(int socket) {
  char byte;
  return recv(socket, &byte, 1, MSG_PEEK) < 0 && (errno == EAGAIN || errno == EINTR);
}

Status Exchange(int socket, int32_t id, std::string_view message, double sendTimeout, double receiveTimeout,
                std::string& reply) {
  if (!IsIdle(socket)) return kTovaMessagePortIsInvalid;
  Status status = Send(socket, message, sendTimeout);
  if (status != kTovaMessagePortSuccess) return status;
  const Deadline deadline(receiveTimeout);
  status = Receive(socket, MessageHeader::kLength, deadline, reply);
  if (status != kTovaMessagePortSuccess) return status;
  const auto header = MessageHeader::Read(reply);
  if (header.id != id || !header.IsAcceptable()) return kTovaMessagePortTransportError;
  return Receive(socket, header.length, deadline, reply);
}

TovaMessagePortRef ConnectTo(std::string_view name) {
  if (!IsFileName(name)) return nullptr;
  const auto folder = MessagePortFolder(MissingFolder::kLeave);
  if (!folder) return nullptr;
  const auto address = SocketAddress(*folder + "/" + std::string(name));
  Descriptor socket = MakeStreamSocket();
  if (!address || !socket || Connect(socket, *address) != 0 || !IsPeerOfSameUser(socket)) return nullptr;
  return new TovaMessagePort(std::move(socket));
}

}  // namespace
}  // namespace Tova

size_t TovaMessagePort::Hash(int /*depth*/) const { return std::hash<const void*>()(this); }

void TovaMessagePort::Describe(std::string& out, int /*depth*/) const { out += "<message port>"; }

TovaMessagePortStatus TovaMessagePort::SendRequest(int32_t messageId, std::string_view data, double sendTimeout,
                                                   double receiveTimeout, std::string& reply) const {
  if (data.size() > kTovaMessagePortMaximumLength) return kTovaMessagePortTransportError;
  const std::lock_guard lock(mutex_);
  Tova::Descriptor socket = std::move(socket_);  // and not put back by what fails or throws
  if (!socket) return kTovaMessagePortIsInvalid;
  const std::string message = Tova::MakeMessageFrame(messageId, data);
  const auto status = Tova::Exchange(socket.Number(), messageId, message, sendTimeout, receiveTimeout, reply);
  if (status == kTovaMessagePortSuccess) socket_ = std::move(socket);
  return status;
}

TovaMessagePortRef TovaMessagePortCreateRemote(TovaStringRef name) {
  return Tova::Guarded([&] { return Tova::ConnectTo(Tova::Text(name)); });
}

TovaMessagePortStatus TovaMessagePortSendRequest(TovaMessagePortRef port, int32_t messageId, TovaDataRef data,
                                                 double sendTimeout, double receiveTimeout, TovaDataRef* reply) {
  if (reply) *reply = nullptr;
  if (!port) return kTovaMessagePortIsInvalid;
  try {
    std::string bytes;
    const auto status = port->SendRequest(messageId, data ? std::string_view(data->bytes) : std::string_view(),
                                          sendTimeout, receiveTimeout, bytes);
    if (status == kTovaMessagePortSuccess && reply && !bytes.empty()) *reply = new TovaData(std::move(bytes));
    return status;
  } catch (const std::exception&) {
    return kTovaMessagePortTransportError;
  }
}
