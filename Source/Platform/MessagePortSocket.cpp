#include "Platform/MessagePortSocket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace Tova {
namespace {

/// Whether the path is a folder (no link to one) of this user that nobody else may look into.
bool IsPrivateFolder(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
         (status.st_mode & 077U) == 0;
}

}  // namespace

std::optional<std::string> MessagePortFolder(MissingFolder missing) {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime && runtime[0] == '/') return runtime;
  std::error_code error;
  const auto temporary = std::filesystem::temp_directory_path(error);
  if (error) return std::nullopt;
  const std::string folder = (temporary / ("tova-" + std::to_string(geteuid()))).string();
  if (missing == MissingFolder::kMake) mkdir(folder.c_str(), 0700);
  if (!IsPrivateFolder(folder)) return std::nullopt;
  return folder;
}

std::optional<sockaddr_un> SocketAddress(const std::string& path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof(address.sun_path)) return std::nullopt;
  std::memcpy(address.sun_path, path.c_str(), path.size());
  return address;
}

Descriptor MakeStreamSocket() { return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)); }

int Connect(const Descriptor& socket, const sockaddr_un& address) {
  return connect(socket.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address));
}

bool IsPeerOfSameUser(const Descriptor& socket) {
  ucred peer = {};
  socklen_t length = sizeof(peer);
  return getsockopt(socket.Number(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == geteuid();
}

}  // namespace Tova
