#pragma once

#include <string_view>
#include <vector>

namespace tool {

struct FontRecord;

/// The tables of a font by whether a test examined them, each list in the order of people's alphabets.
struct FontTables {
  std::vector<std::string_view> tested;
  std::vector<std::string_view> notTested;
};

FontTables TablesOf(const FontRecord& font);

/// Whether a test examines the tables with this tag, by its identifier and the constant of its target.
bool Examines(std::string_view test, std::string_view target, std::string_view tag);

}  // namespace tool
