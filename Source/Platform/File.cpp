#include "Platform/File.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "Platform/Paths.h"

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

/// Why an open file cannot be read as a whole, as an errno; 0 for a regular file. Fills in the status.
int CheckRegular(int descriptor, struct stat& status) {
  if (fstat(descriptor, &status) != 0) return errno;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  return S_ISREG(status.st_mode) ? 0 : EINVAL;
}

/// Where file systems with named forks offer that of resources.
constexpr std::string_view kNamedFork = "/..namedfork/rsrc";
constexpr std::string_view kSidecarPrefix = "._";

std::shared_ptr<const File> AtPath(const std::string& path) {
  return File::AtUrl(Adopt(TovaURLCreateWithFilePath(path.c_str())).get());
}

bool Exists(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0;
}

}  // namespace

std::shared_ptr<const File> File::AtUrl(TovaURLRef url) {
  if (!TovaURLGetData(url) && !TovaURLGetFileSystemPath(url)) return nullptr;
  const std::shared_ptr<const File> file(new File(url));
  const bool there = file->state_ != State::kNotOpened || Exists(file->path_);
  return there ? file : nullptr;
}

File::File(TovaURLRef url) : url_(Share(url)), data_(Share(TovaURLGetData(url))) {
  if (data_) {
    path_ = Text(Adopt(TovaURLCopyPath(url)));
    bytes_ = ByteView(TovaDataGetBytes(data_.get()), TovaDataGetLength(data_.get()));
  } else {
    path_ = TovaURLGetFileSystemPath(url);
    Map();
  }
  oneFile_ = ReadOneFile(bytes_);
}

File::~File() {
  if (mapped_) munmap(const_cast<uint8_t*>(bytes_.Data()), bytes_.Size());
}

void File::Map() {
  const auto fail = [this](State state, int error) {
    state_ = state;
    error_ = error;
  };
  const Descriptor descriptor(open(path_.c_str(), kOpenFlags));
  if (descriptor.value < 0) return fail(State::kNotOpened, errno);
  struct stat status;
  if (const int error = CheckRegular(descriptor.value, status)) return fail(State::kNotOpened, error);
  device_ = status.st_dev;
  number_ = status.st_ino;
  if (status.st_size == 0) return;  // there is nothing to map
  const auto size = static_cast<size_t>(status.st_size);
  void* address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor.value, 0);
  if (address == MAP_FAILED) return fail(State::kNotMapped, errno);
  bytes_ = ByteView(static_cast<const uint8_t*>(address), size);
  mapped_ = true;
}

std::optional<ByteView> File::Open(Fork fork) const {
  if (state_ != State::kOpened) return std::nullopt;
  if (fork == Fork::kData) return oneFile_ ? oneFile_->data : bytes_;
  const Companions& companions = GetCompanions();
  if (companions.namedFork) return companions.namedFork->bytes_;
  if (companions.sidecarParts.resource) return companions.sidecarParts.resource;
  return oneFile_ ? oneFile_->resource : std::nullopt;
}

std::optional<uint32_t> File::TypeCode() const {
  if (const auto type = GetCompanions().sidecarParts.type) return type;
  return oneFile_ ? oneFile_->type : std::nullopt;
}

bool File::IsSameAs(const File& other) const {
  if (data_ || other.data_ || state_ == State::kNotOpened) return this == &other;
  return device_ == other.device_ && number_ == other.number_;
}

std::shared_ptr<const File> File::Sibling(const std::string& name) const {
  if (data_ || !IsFileName(name)) return nullptr;
  return AtPath(path_.substr(0, path_.rfind('/') + 1) + name);
}

const File::Companions& File::GetCompanions() const {
  std::call_once(companionsSought_, [this] {
    if (data_ || state_ != State::kOpened) return;
    auto namedFork = AtPath(path_ + std::string(kNamedFork));
    if (namedFork && !namedFork->bytes_.Empty()) companions_.namedFork = std::move(namedFork);
    auto sidecar = Sibling(std::string(kSidecarPrefix) + path_.substr(path_.rfind('/') + 1));
    auto parts = sidecar ? ReadSidecar(sidecar->bytes_) : std::nullopt;
    if (!parts) return;
    companions_.sidecar = std::move(sidecar);
    companions_.sidecarParts = *parts;
  });
  return companions_;
}

}  // namespace Tova
