#pragma once

#include "support/FontBuilder.h"
#include "support/SuitcaseBuilder.h"

namespace fuzz {

/// A small font with everything that a test or an accessor looks into.
test::FontBuilder RichFont();

/// A suitcase with everything that is read of resources.
test::SuitcaseBuilder RichSuitcase();

}  // namespace fuzz
