#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tool {

struct Utf8Character {
  uint32_t code;
  size_t bytes;  ///< 0 when the text does not begin with UTF-8; the code is then that of its first byte
};

/// The first character of a text that is not empty.
Utf8Character DecodeUtf8(std::string_view text);

/// Whether all of it is UTF-8.
bool IsUtf8(std::string_view text);

/// Text as it may go to a terminal. Names out of a font, and file names, can hold anything; what would drive the
/// terminal, hide or reorder the line is written as an escape: bytes that are no UTF-8, and control characters below
/// U+0080, as \x1b, other control characters, line separators and marks of writing direction as \u202e.
std::string EscapeForTerminal(std::string_view text);

/// Text as it may stand in XML or HTML, in a quoted attribute too: so escaped, and with character references for the
/// characters of markup and for those of special.
std::string EscapeForMarkup(std::string_view text, std::string_view special = {});

/// The bytes of a path with those other than unreserved characters and slashes (RFC 3986, 2.3) percent-encoded, and
/// back.
std::string PercentEncoded(std::string_view bytes);
std::string PercentDecoded(std::string_view text);

/// Takes a text piece by piece.
using TextSink = std::function<void(std::string_view)>;

/// Writes a text as a JSON string, quotation marks included. Such characters are escaped there, too; bytes that are no
/// UTF-8 become U+FFFD.
void WriteJsonString(std::string_view text, const TextSink& sink);

}  // namespace tool
