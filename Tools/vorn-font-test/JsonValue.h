#pragma once

#include <Tova/Tova.h>

#include <string>

namespace tool {

/// A value as JSON in one line, keys in the order they have there, dates as ISO 8601 UTC strings. Control characters
/// are escaped.
std::string ToJson(TovaTypeRef value);

}  // namespace tool
