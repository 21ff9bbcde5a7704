#pragma once

#include <string>
#include <vector>

#include "support/TableBuilder.h"

namespace test {

/// A font file that is shipped with the library, in the folder Samples.
struct Sample {
  std::string name;
  Bytes bytes;
};

/// Good.ttf: nothing worse than information is found in it.
/// Collection.ttc: two fonts, a regular and a slanted one, likewise.
/// Broken.ttf: the good font with faults of every kind.
std::vector<Sample> MakeSamples();

}  // namespace test
