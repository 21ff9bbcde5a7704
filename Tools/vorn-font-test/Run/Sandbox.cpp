#include "Run/Sandbox.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <Tova/Tova.hpp>
#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <vector>

#include "Run/Sanitized.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr rlim_t kOpenFiles = 64;

/// The real path; empty when there is none.
std::string RealPath(const fs::path& path) {
  std::error_code error;
  return fs::canonical(path, error).string();
}

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

// ---- Limits

void Limit(__rlimit_resource resource, rlim_t value) {
  rlimit limit;
  if (getrlimit(resource, &limit) != 0) return;
  limit.rlim_cur = std::min(value, limit.rlim_max);
  limit.rlim_max = limit.rlim_cur;
  setrlimit(resource, &limit);
}

// ---- Files: Landlock

// Rights that came after the first version of the interface, which older headers do not name.
constexpr uint64_t kRefer = uint64_t{1} << 13;
constexpr uint64_t kTruncate = uint64_t{1} << 14;
constexpr uint64_t kDeviceControl = uint64_t{1} << 15;

long LandlockVersion() {
  return syscall(SYS_landlock_create_ruleset, nullptr, size_t{0}, LANDLOCK_CREATE_RULESET_VERSION);
}

/// All rights that this version of the interface can take away.
uint64_t RightsOf(long version) {
  uint64_t rights = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;
  if (version >= 2) rights |= kRefer;
  if (version >= 3) rights |= kTruncate;
  if (version >= 5) rights |= kDeviceControl;
  return rights;
}

void AllowReading(int ruleset, const std::string& place) {
  landlock_path_beneath_attr rule = {};
  rule.parent_fd = open(place.c_str(), O_PATH | O_CLOEXEC);
  if (rule.parent_fd < 0) return;
  struct stat status;
  const bool isFolder = fstat(rule.parent_fd, &status) == 0 && S_ISDIR(status.st_mode);
  rule.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE | (isFolder ? LANDLOCK_ACCESS_FS_READ_DIR : 0);
  syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0u);
  close(rule.parent_fd);
}

/// What a set of rules takes away, as the newest version of the interface has it; older ones have less of it.
struct Ruleset {
  uint64_t files;
  uint64_t network;  ///< from version 4 on: serving a TCP port, and connecting to one
  uint64_t scopes;   ///< from version 6 on: abstract local sockets of others, and signals to them
};

void ConfineTo(const ReadablePlaces& places, bool askConduit) {
  const long version = LandlockVersion();
  if (version < 1) return;
  const Ruleset attributes = {
      .files = RightsOf(version), .network = askConduit ? 0u : 3u, .scopes = askConduit ? 0u : 3u};
  const size_t size = version >= 6 ? sizeof(attributes) : version >= 4 ? 2 * sizeof(uint64_t) : sizeof(uint64_t);
  const long ruleset = syscall(SYS_landlock_create_ruleset, &attributes, size, 0u);
  if (ruleset < 0) return;
  for (const std::string& place : places.Places()) AllowReading(static_cast<int>(ruleset), place);
  syscall(SYS_landlock_restrict_self, ruleset, 0u);
  close(static_cast<int>(ruleset));
}

// ---- Powers of the superuser

/// Keeps of them that of reading what others may not read.
void GiveUpPowers() {
  __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
  std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> powers = {};
  if (syscall(SYS_capget, &header, powers.data()) != 0) return;
  const uint32_t kept = powers[0].permitted & (uint32_t{1} << CAP_DAC_READ_SEARCH);
  powers = {};
  powers[0].permitted = powers[0].effective = kept;
  syscall(SYS_capset, &header, powers.data());
}

// ---- System calls: a filter in the kernel's packet filter language

#if defined(__x86_64__)
constexpr uint32_t kArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr uint32_t kArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr uint32_t kArchitecture = 0;  // no filter
#endif

/// Refuses system calls with EPERM and lets all others through.
class CallFilter {
 public:
  CallFilter() {
    Load(offsetof(seccomp_data, arch));
    RefuseWhen(BPF_JEQ, kArchitecture, false);
    Load(offsetof(seccomp_data, nr));
#if defined(__x86_64__)
    RefuseWhen(BPF_JGE, 0x40000000, true);  // the numbers of programs with short pointers
#endif
  }

  void Refuse(std::initializer_list<long> calls) {
    for (const long call : calls) RefuseWhen(BPF_JEQ, static_cast<uint32_t>(call), true);
  }

  /// Refuses a call unless its first argument is this. To come last.
  void RefuseUnless(long call, uint32_t argument) {
    program_.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<uint32_t>(call), 0, 2));
    Load(offsetof(seccomp_data, args));
    RefuseWhen(BPF_JEQ, argument, false);
  }

  void Install() {
    program_.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    for (const auto& [at, whenTrue] : refusals_) {
      uint8_t& jump = whenTrue ? program_[at].jt : program_[at].jf;
      jump = static_cast<uint8_t>(program_.size() - at - 1);
    }
    program_.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM));
    const sock_fprog program = {static_cast<unsigned short>(program_.size()), program_.data()};
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
  }

 private:
  struct Refusal {
    size_t at;
    bool whenTrue;
  };

  void Load(size_t offset) { program_.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<uint32_t>(offset))); }
  /// Goes to the refusal, which stands at the end, when the comparison with what was loaded comes out so.
  void RefuseWhen(uint16_t comparison, uint32_t value, bool whenTrue) {
    refusals_.push_back({program_.size(), whenTrue});
    program_.push_back(BPF_JUMP(static_cast<uint16_t>(BPF_JMP | comparison | BPF_K), value, 0, 0));
  }

  std::vector<sock_filter> program_;
  std::vector<Refusal> refusals_;
};

void RefuseCalls(bool askConduit) {
  if (kArchitecture == 0) return;
  CallFilter filter;
  if (!askConduit) filter.Refuse({SYS_socket, SYS_connect});
  filter.Refuse({SYS_socketpair, SYS_bind, SYS_listen, SYS_accept, SYS_accept4});
  filter.Refuse({SYS_execve, SYS_execveat, SYS_ptrace, SYS_process_vm_readv, SYS_process_vm_writev, SYS_kill, SYS_tkill,
                 SYS_rt_sigqueueinfo, SYS_pidfd_open, SYS_pidfd_send_signal});
  filter.Refuse({SYS_fchmod, SYS_fchmodat, SYS_fchown, SYS_fchownat, SYS_utimensat, SYS_setxattr, SYS_lsetxattr,
                 SYS_fsetxattr, SYS_name_to_handle_at, SYS_open_by_handle_at, SYS_mount, SYS_umount2, SYS_chroot,
                 SYS_unshare, SYS_setns});
  filter.Refuse({SYS_io_uring_setup, SYS_bpf, SYS_keyctl, SYS_add_key, SYS_request_key, SYS_userfaultfd,
                 SYS_perf_event_open, SYS_memfd_create});
#if defined(__x86_64__)  // calls that newer architectures do without
  filter.Refuse({SYS_fork, SYS_vfork, SYS_chmod, SYS_chown, SYS_lchown, SYS_utime, SYS_utimes, SYS_futimesat});
#endif
  if (!kSanitized) filter.Refuse({SYS_clone, SYS_clone3});
  filter.RefuseUnless(SYS_tgkill, static_cast<uint32_t>(getpid()));  // abort() signals its own process
  filter.Install();
}

}  // namespace

void ReadablePlaces::AddRoot(const std::string& path) {
  std::error_code error;
  if (!fs::is_directory(path, error)) return AddFile(path);
  if (std::string real = RealPath(path); !real.empty()) places_.insert(std::move(real));
}

void ReadablePlaces::AddFile(const std::string& path) {
  const Needs needs = NeedsOf(path);
  for (const std::string& place : {needs.folder, needs.target}) {
    if (!place.empty() && !Holds(place)) places_.insert(place);
  }
}

void ReadablePlaces::AddResources() {
  const TovaBundleRef library = TovaBundleGetWithIdentifier(Tova::MakeString("veltrin.VornFontTest").get());
  const auto tests = Tova::Adopt(
      TovaBundleCopyResourceURL(library, Tova::MakeString("OskelBuiltinTests").get(), Tova::MakeString("plist").get()));
  if (tests) AddFile(TovaURLGetFileSystemPath(tests.get()));
  const fs::path program = RealPath("/proc/self/exe");
  const std::string own = RealPath(program.parent_path().parent_path() / "share" / program.filename());
  if (!own.empty()) places_.insert(own);
}

bool ReadablePlaces::Cover(const std::string& path) {
  const Needs needs = NeedsOf(path);
  return Holds(needs.folder) && (needs.target.empty() || Holds(needs.target));
}

ReadablePlaces::Needs ReadablePlaces::NeedsOf(const std::string& path) {
  if (std::string folder = FolderOf(path); folder != lastFolder_ || lastRealFolder_.empty()) {
    lastRealFolder_ = RealPath(folder);
    lastFolder_ = std::move(folder);
  }
  struct stat status;
  const bool isLink = lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
  return {lastRealFolder_, isLink ? RealPath(path) : std::string()};
}

/// Whether a place or a folder that it lies in is here.
bool ReadablePlaces::Holds(std::string place) const {
  while (!place.empty() && !places_.contains(place)) {
    if (place == "/") return false;
    place = FolderOf(place);
  }
  return true;
}

bool CanConfineToPlaces() {
  static const bool can = LandlockVersion() >= 1;
  return can;
}

void Confine(const Permissions& permissions) {
  Limit(RLIMIT_CORE, 0);
  Limit(RLIMIT_NOFILE, kOpenFiles);
  if (!kSanitized) {  // whose shadow memory no limit would hold, and whose reports are written to files
    if (!permissions.writeErrors) Limit(RLIMIT_FSIZE, 0);
    if (permissions.memory > 0) Limit(RLIMIT_DATA, permissions.memory);
  }
  GiveUpPowers();
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return;
  ConfineTo(*permissions.places, permissions.askConduit);
  if (permissions.filterCalls) RefuseCalls(permissions.askConduit);
}

}  // namespace tool
