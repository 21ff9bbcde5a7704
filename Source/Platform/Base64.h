#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Tova {

/// The base 64 encoding of RFC 4648, padded, in one line.
std::string EncodeBase64(std::string_view bytes);
/// Reads it back, white space skipped; none when the text is malformed.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace Tova
