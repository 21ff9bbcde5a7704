#include "Platform/File.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace Tova {
namespace {

/// Never blocks on a pipe, and never makes a terminal the controlling one.
constexpr int kOpenFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

/// Closes a descriptor at the end of a scope.
struct Descriptor {
  explicit Descriptor(int number) : value(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (value >= 0) close(value);
  }
  int value;
};

/// Opens a regular file; -1 with errno set for anything else. Fills in the status.
int OpenRegular(const char* path, struct stat& status) {
  const int descriptor = open(path, kOpenFlags);
  if (descriptor < 0) return -1;
  int error = fstat(descriptor, &status) == 0 ? 0 : errno;
  if (error == 0 && !S_ISREG(status.st_mode)) error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  if (error == 0) return descriptor;
  close(descriptor);
  errno = error;
  return -1;
}

}  // namespace

std::optional<FileReference> FileReference::FromUrl(TovaURLRef url) {
  const char* path = TovaURLGetFileSystemPath(url);
  struct stat status;
  if (!path || stat(path, &status) != 0) return std::nullopt;
  return FileReference(path);
}

Url FileReference::CreateUrl() const { return Adopt(TovaURLCreateWithFilePath(path_.c_str())); }

std::optional<ForkReader> ForkReader::Open(const FileReference& file, Fork fork) {
  if (fork != Fork::kData) return std::nullopt;
  struct stat status;
  const int descriptor = OpenRegular(file.Path().c_str(), status);
  if (descriptor < 0) return std::nullopt;
  return ForkReader(descriptor);
}

std::optional<size_t> ForkReader::Read(uint8_t* buffer, size_t count) {
  size_t total = 0;
  while (total < count) {
    const ssize_t got = read(descriptor_, buffer + total, count - total);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    total += static_cast<size_t>(got);
  }
  return total;
}

bool ForkReader::Close() {
  const int descriptor = std::exchange(descriptor_, -1);
  return descriptor < 0 || close(descriptor) == 0;
}

FileMapping::Result FileMapping::Map(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return {nullptr, Step::kStatus, errno};
  const Descriptor descriptor(OpenRegular(path.c_str(), status));
  if (descriptor.value < 0) return {nullptr, Step::kOpen, errno};
  const auto size = static_cast<size_t>(status.st_size);
  void* address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor.value, 0);
  if (address == MAP_FAILED) return {nullptr, Step::kMap, errno};
  const ByteView bytes(static_cast<const uint8_t*>(address), size);
  return {std::shared_ptr<const FileMapping>(new FileMapping(bytes)), Step::kDone, 0};
}

FileMapping::~FileMapping() { munmap(const_cast<uint8_t*>(bytes_.Data()), bytes_.Size()); }

}  // namespace Tova
