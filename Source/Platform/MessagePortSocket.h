#pragma once

#include <sys/un.h>

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Descriptor.h"

// Where the sockets of message ports lie, and who is at their other end.

namespace Tova {

/// The folder of all ports of this user; none when there is none. The one under the temporary folder is made where
/// wanted, and counts only while it is the user's own and closed to everybody else.
enum class MissingFolder { kMake, kLeave };
std::optional<std::string> MessagePortFolder(MissingFolder missing);

/// The address of the socket at a path; none when the path is too long for one.
std::optional<sockaddr_un> SocketAddress(const std::string& path);

/// A stream socket that never blocks.
Descriptor MakeStreamSocket();
/// As connect(2).
int Connect(const Descriptor& socket, const sockaddr_un& address);

/// Whether the process at the other end is one of this user.
bool IsPeerOfSameUser(const Descriptor& socket);

}  // namespace Tova
