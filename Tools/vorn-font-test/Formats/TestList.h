#pragma once

#include <Tova/Tova.h>

#include "Options.h"
#include "Run/Output.h"

namespace tool {

/// Writes the descriptions of tests in the format that the options name: {"tests": [...]} as JSON and as a property
/// list, one description a line as JSON lines, and identifier, types, name and description as text.
void WriteTestList(TovaArrayRef tests, const Options& options, Output& output);

}  // namespace tool
