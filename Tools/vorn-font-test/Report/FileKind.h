#pragma once

#include <string>

namespace tool {

/// Why no font of a file can be opened, as far as its first bytes tell: "no font can be opened: the file is empty".
std::string WhyUnopened(const std::string& path);

}  // namespace tool
