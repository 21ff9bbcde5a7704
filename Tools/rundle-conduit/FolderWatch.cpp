#include "FolderWatch.h"

#include <algorithm>

namespace conduit {
namespace {

/// The clock that the kernel takes the times of files from.
timespec Now() {
  timespec now = {};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  return now;
}

bool IsBefore(const timespec& first, const timespec& second) {
  return first.tv_sec != second.tv_sec ? first.tv_sec < second.tv_sec : first.tv_nsec < second.tv_nsec;
}

}  // namespace

bool FolderWatch::Seen::operator==(const Seen& other) const {
  return exists == other.exists && device == other.device && file == other.file &&
         changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}

FolderWatch::FolderWatch() : start_(Now()) {}

void FolderWatch::Add(const std::string& path) {
  if (!paths_.insert(path).second) return;
  seen_.push_back(Look(path));
  // A time in the future says nothing: it is that of another machine's clock.
  const Seen& seen = seen_.back();
  if (seen.exists && !IsBefore(seen.changed, start_) && !IsBefore(Now(), seen.changed)) changedWhileRead_ = true;
}

bool FolderWatch::MayHaveChanged() const {
  return changedWhileRead_ || std::ranges::any_of(seen_, [](const Seen& seen) { return !(Look(seen.path) == seen); });
}

FolderWatch::Seen FolderWatch::Look(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return {.path = path};
  return {.path = path, .exists = true, .device = status.st_dev, .file = status.st_ino, .changed = status.st_ctim};
}

}  // namespace conduit
