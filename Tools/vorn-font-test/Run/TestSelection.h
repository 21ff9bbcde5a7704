#pragma once

#include <Tova/Tova.hpp>

#include "Options.h"

namespace tool {

/// The descriptions of the tests that the options select, each once: in the order of the identifiers and globs given,
/// the matches of a glob (and all tests, when none are given) by ascending identifier. Throws UsageError when an
/// identifier or glob matches no test, or no test remains. The test for duplicates is left out unless it is asked for.
Tova::Array SelectTests(const Options& options);

/// Whether one of these tests asks which fonts are installed.
bool AskAboutDuplicates(TovaArrayRef tests);

}  // namespace tool
