#include "Platform/Johab.h"

#include <iconv.h>

#include <cstdint>

namespace Tova {
namespace {

struct Descriptor {
  Descriptor(const char* to, const char* from) : value(iconv_open(to, from)) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (IsOpen()) iconv_close(value);
  }
  bool IsOpen() const { return reinterpret_cast<intptr_t>(value) != -1; }
  iconv_t value;
};

std::optional<std::string> Convert(std::string_view input, const char* to, const char* from) {
  const Descriptor descriptor(to, from);
  if (!descriptor.IsOpen()) return std::nullopt;
  std::string output(input.size() * 3, '\0');  // a byte of either becomes at most three of the other
  char* in = const_cast<char*>(input.data());  // iconv's interface; it does not write there
  char* out = output.data();
  size_t inLeft = input.size();
  size_t outLeft = output.size();
  if (iconv(descriptor.value, &in, &inLeft, &out, &outLeft) == static_cast<size_t>(-1)) return std::nullopt;
  output.resize(output.size() - outLeft);
  return output;
}

}  // namespace

std::optional<std::string> Utf8FromJohab(std::string_view bytes) { return Convert(bytes, "UTF-8", "JOHAB"); }

std::optional<std::string> JohabFromUtf8(std::string_view text) { return Convert(text, "JOHAB", "UTF-8"); }

}  // namespace Tova
