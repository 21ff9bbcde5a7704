#pragma once

#include <poll.h>

#include <string>
#include <vector>

#include "Platform/Descriptor.h"
#include "Platform/Value.h"

namespace Tova {

/// A client of a local message port: what of its messages has come, and what of the last reply has not gone out yet.
/// Its next message waits until the reply is out.
class MessagePortClient {
 public:
  explicit MessagePortClient(Descriptor socket) : socket_(std::move(socket)) {}

  /// What to wait for.
  pollfd Polled() const { return {socket_.Number(), static_cast<short>(reply_.empty() ? POLLIN : POLLOUT), 0}; }
  /// Goes on as far as that is possible now. False when the client is done with, or to be dropped.
  bool Attend(TovaMessagePortAnswer answer, void* context);

 private:
  /// False when nothing comes any more.
  bool Receive();
  /// False when nothing goes out any more.
  bool Send();
  /// Takes the next whole message, if there is one, and answers it. False when the client sends what is none.
  bool AnswerNext(TovaMessagePortAnswer answer, void* context);

  Descriptor socket_;
  std::string messages_;
  std::string reply_;  // empty once it is out
  size_t sent_ = 0;    // how much of it is
};

}  // namespace Tova

/// The server's side of a message port: one thread, which waits for all clients at once.
struct TovaLocalMessagePort final : Tova::Object {
  /// path is that of the socket, to be removed at the end; empty when that is another's business.
  TovaLocalMessagePort(Tova::Descriptor listener, std::string path, TovaMessagePortAnswer answer, void* context)
      : Object(kTovaTypeLocalMessagePort),
        listener_(std::move(listener)),
        path_(std::move(path)),
        answer_(answer),
        context_(context) {}
  ~TovaLocalMessagePort();

  bool IsEqual(const Object& other, int /*depth*/) const override { return this == &other; }
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override { delete this; }

  bool Serve(int stop) const;

 private:
  void AttendClients(const std::vector<pollfd>& polled) const;
  /// False when there is no listening socket any more.
  bool AcceptClient() const;

  Tova::Descriptor listener_;
  std::string path_;
  TovaMessagePortAnswer answer_;
  void* context_;
  mutable std::vector<Tova::MessagePortClient> clients_;  // the one heard of last is the last
};
