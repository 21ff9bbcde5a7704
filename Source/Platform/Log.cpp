#include <unistd.h>

#include <Tova/Tova.hpp>
#include <array>
#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Utf8.h"
#include "Platform/Value.h"

namespace Tova {
namespace {

/// Whether a character acts on the terminal or on the direction of the line instead of being shown.
bool IsControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x61C || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (size_t at = 0; at < text.size();) {
    const Utf8Character character = ReadUtf8(text, at);
    if (IsControl(character.code)) {
      std::array<char, 8> escape;
      const char* format = character.code < 0x80 ? "\\x%02x" : "\\u%04x";
      std::snprintf(escape.data(), escape.size(), format, static_cast<unsigned>(character.code));
      escaped += escape.data();
    } else {
      escaped += text.substr(at, character.length);
    }
    at += character.length;
  }
  return escaped;
}

void WriteToStandardError(TovaStringRef line, void* /*context*/) {
  const std::string text = Escaped(Text(line)) + "\n";
  for (std::string_view rest = text; !rest.empty();) {
    const ssize_t written = write(STDERR_FILENO, rest.data(), rest.size());
    if (written <= 0) return;
    rest.remove_prefix(static_cast<size_t>(written));
  }
}

/// Where lines go, as one value.
using Destination = std::pair<TovaLogSink, void*>;

/// Reads the process's destination, or replaces it.
Destination ExchangeDestination(const Destination* replacement) {
  static std::mutex mutex;
  static Destination destination = {WriteToStandardError, nullptr};
  const std::lock_guard lock(mutex);
  const Destination current = destination;
  if (replacement) destination = *replacement;
  return current;
}

}  // namespace
}  // namespace Tova

void TovaLogLine(TovaStringRef line) {
  if (!line) return;
  Tova::Guarded([&] {
    const auto [sink, context] = Tova::ExchangeDestination(nullptr);
    sink(line, context);
  });
}

void TovaLogSetSink(TovaLogSink sink, void* context) {
  Tova::Guarded([&] {
    const Tova::Destination replacement = {sink ? sink : Tova::WriteToStandardError, sink ? context : nullptr};
    Tova::ExchangeDestination(&replacement);
  });
}
