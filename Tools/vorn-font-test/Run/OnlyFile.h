#pragma once

#include <cstdint>
#include <string>

#include "Run/Sandbox.h"

namespace tool {

/// Makes this process what a worker is, for a run over one file of which only the exit status is wanted: a process of
/// its own would take as long to make as a small font to test. From here on the process keeps to the permissions; a
/// crash, more than so many seconds (0: no limit) or too much memory end it with kProgramFailed and a line on standard
/// error that names the file.
void BecomeWorker(const std::string& path, const Permissions& permissions, uint64_t timeout);

}  // namespace tool
