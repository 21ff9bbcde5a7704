#pragma once

#include <string>

#include "Options.h"
#include "Run/Output.h"

namespace tool {

/// Writes what is known of a rule, or of all rules of a test or of a group, given by name. Throws UsageError with names
/// like it when there is none of that name.
void WriteExplanation(const std::string& name, const Options& options, Output& output);

}  // namespace tool
