#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

#include "Run/Outcome.h"
#include "Run/Sandbox.h"

namespace tool {

/// Tests a file and hands on what comes of it.
using TestFile = std::function<void(const std::string& path, OutcomeSink& sink)>;

/// The exit status of a worker that found no memory.
inline constexpr int kWorkerOutOfMemory = 120;

/// The life of a worker, a process made by fork: keeps to the permissions, then tests the files that come through the
/// channel, one after the other, until the parent closes it or ends.
[[noreturn]] void RunWorker(int channel, pid_t parent, const Permissions& permissions, const TestFile& test);

}  // namespace tool
