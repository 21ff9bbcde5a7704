#pragma once

#include <string>

namespace tool {

/// What a file is that holds no font that can be opened, in words after "the file": "is empty", "is a compressed web
/// font (WOFF2), ...".
std::string KindInWords(const std::string& path);

}  // namespace tool
