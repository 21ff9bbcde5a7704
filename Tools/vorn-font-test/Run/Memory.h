#pragma once

namespace tool {

/// From here on, an allocation with new that fails anywhere in the program ends it with kProgramFailed and a line on
/// standard error: a report that lacks something must not pass for a whole one.
void EndWithoutMemory();

}  // namespace tool
