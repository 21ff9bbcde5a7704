#pragma once

#include <string>
#include <string_view>

namespace Tova {

/// Whether a name can stand for one file or folder in a path: not empty, no slash, no NUL, not "." or "..".
inline bool IsFileName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find_first_of(std::string_view("/\0", 2)) == name.npos;
}

}  // namespace Tova
