#include "Formats/TextStyle.h"

namespace tool {

std::string TextStyle::Of(Severity severity, std::string_view text) const {
  switch (severity) {
    case Severity::kFatal:
      return Colored("1;31", text);
    case Severity::kMajor:
      return Colored("31", text);
    case Severity::kMinor:
      return Colored("33", text);
    case Severity::kTechnical:
      return Colored("36", text);
    case Severity::kInformation:
      return Colored("34", text);
    case Severity::kNonFont:
      break;
  }
  return Colored("35", text);
}

std::string TextStyle::Colored(std::string_view code, std::string_view text) const {
  if (!colored_) return std::string(text);
  return std::string("\x1b[").append(code).append("m").append(text).append("\x1b[0m");
}

std::string Grouped(size_t count) {
  std::string digits = std::to_string(count);
  for (size_t at = digits.size(); at > 3;) digits.insert(at -= 3, 1, ',');
  return digits;
}

std::string Counted(size_t count, std::string_view noun) {
  return Grouped(count).append(" ").append(noun).append(count == 1 ? "" : "s");
}

}  // namespace tool
