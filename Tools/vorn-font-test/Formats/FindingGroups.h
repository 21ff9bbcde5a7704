#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Report/Report.h"

namespace tool {

/// The findings of a font that break one rule and are equally grave.
struct FindingGroup {
  struct Place {
    const TestRecord* test;
    size_t message;  ///< index; that of no message for a severity that none explains
  };

  Severity severity;
  const Rule* rule;         ///< null for messages that are not in the catalogue
  std::string_view format;  ///< of those
  size_t count = 0;
  std::vector<int64_t> glyphs = {};  ///< ascending, each once
  bool areAlike = true;              ///< whether they say the same, but for the glyph
  std::vector<Place> places = {};    ///< of the first ones
};

/// The findings of a font that count, the gravest group first, equally grave ones in the order of their tests.
std::vector<FindingGroup> GroupFindings(const FontRecord& font, size_t placesKept);

}  // namespace tool
