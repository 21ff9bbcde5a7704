#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Tova {

/// Code page 1361, the one encoding here that ICU lacks, through the C library's iconv. 0x5C is the won sign. None when
/// the text does not convert strictly, or the C library has no such converter either.
std::optional<std::string> Utf8FromJohab(std::string_view bytes);
std::optional<std::string> JohabFromUtf8(std::string_view text);

}  // namespace Tova
