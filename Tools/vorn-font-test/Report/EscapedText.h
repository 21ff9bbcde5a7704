#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tool {

/// Text as it may go to a terminal. Names out of a font, and file names, can hold anything; what would drive the
/// terminal, hide or reorder the line is written as an escape: bytes that are no UTF-8, and control characters below
/// U+0080, as \x1b, other control characters, line separators and marks of writing direction as \u202e.
std::string EscapeForTerminal(std::string_view text);

/// Text as it may stand in XML or HTML, in a quoted attribute too: so escaped, and with character references for the
/// characters of markup and for those of special.
std::string EscapeForMarkup(std::string_view text, std::string_view special = {});

/// Takes a text piece by piece.
using TextSink = std::function<void(std::string_view)>;

/// Writes a text as a JSON string, quotation marks included. Such characters are escaped there, too; bytes that are no
/// UTF-8 become U+FFFD.
void WriteJsonString(std::string_view text, const TextSink& sink);

}  // namespace tool
