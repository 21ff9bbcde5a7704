#pragma once

namespace tool {

/// From here on, every allocation with new that fails anywhere in the program is remembered. The libraries get over
/// some of them by leaving out what does not fit, and a report that lacks something must not pass for a whole one.
void WatchMemory();
/// Throws std::bad_alloc when an allocation has failed.
void RequireMemory();
/// Says on standard error that there is not enough memory, which takes none.
void PrintOutOfMemory() noexcept;

}  // namespace tool
