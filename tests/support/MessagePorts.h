#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/TemporaryFolder.h"

namespace test {

/// Sets an environment variable, or unsets it with null, and puts it back at the end.
class Variable {
 public:
  Variable(std::string name, const char* value);
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable();

 private:
  void Set(const char* value) const;

  std::string name_;
  bool wasSet_;
  std::string before_;
};

/// An empty $XDG_RUNTIME_DIR.
class RuntimeFolder {
 public:
  std::string File(const std::string& name) const { return folder_.File(name); }

 private:
  TemporaryFolder folder_;
  Variable variable_{"XDG_RUNTIME_DIR", folder_.Path().c_str()};
};

/// The lines that go to the system log while this lives.
class LogLines {
 public:
  LogLines();
  ~LogLines();
  std::vector<std::string> Get() const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

/// A server of a message port on a thread of its own. Its answers are made there.
class PortServer {
 public:
  using Answer = std::function<std::string(int32_t id, std::string_view data)>;
  PortServer(const std::string& name, Answer answer);
  PortServer(const PortServer&) = delete;
  PortServer& operator=(const PortServer&) = delete;
  ~PortServer();

 private:
  Answer answer_;
  Tova::LocalMessagePort port_;
  int stop_[2];
  std::thread thread_;
};

/// A peer that does with each client in turn what its script says, and closes the connection. For misbehaviour.
class ScriptedPeer {
 public:
  using Script = std::function<void(int socket)>;
  ScriptedPeer(const std::string& name, std::vector<Script> scripts);
  ScriptedPeer(const ScriptedPeer&) = delete;
  ScriptedPeer& operator=(const ScriptedPeer&) = delete;
  ~ScriptedPeer();

  /// Waits until the client has gone, or this is to end.
  static void Stall(int socket);
  /// Reads one message of less than 64 KiB, and returns its data.
  static std::string Read(int socket);
  static void Write(int socket, std::string_view bytes);

 private:
  /// False when there is none, or nothing is to be done with it any more.
  bool SetClient(int socket);

  int listener_;
  std::mutex mutex_;
  int client_ = -1;
  bool ends_ = false;
  std::thread thread_;
};

/// A message as it is sent; length, where given, is stated in place of that of the data.
std::string Frame(int32_t id, std::string_view data, std::optional<uint32_t> length = {});
/// A connection to a port, past the library; to be closed.
int ConnectRaw(const std::string& name);

Tova::Data MakeData(std::string_view bytes);
Tova::MessagePort Connect(const std::string& name);

}  // namespace test
