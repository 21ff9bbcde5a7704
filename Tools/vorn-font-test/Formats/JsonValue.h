#pragma once

#include <Tova/Tova.h>

#include <string>

#include "Report/EscapedText.h"

namespace tool {

/// Writes a value as JSON in one line, keys in the order they have there, dates as ISO 8601 UTC strings. Control
/// characters are escaped. Takes no memory to speak of, however large the value is.
void WriteJson(TovaTypeRef value, const TextSink& sink);

/// A small value as such a line.
std::string ToJson(TovaTypeRef value);

}  // namespace tool
