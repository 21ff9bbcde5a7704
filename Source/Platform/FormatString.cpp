#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>

#include "Platform/String.h"
#include "Platform/Utf8.h"

namespace Tova {
namespace {

/// The widest field and the longest precision that a format may ask for, in characters: far more than any message
/// needs, far less than would exhaust memory.
constexpr size_t kMaximumField = 1000;

/// How many bits of an integer argument a directive prints.
enum class IntegerSize { kChar = 8, kShort = 16, kInt = 32, kLong = 64 };

/// What stands between a '%' and its conversion character.
struct Directive {
  size_t argument = 0;  ///< counted from 1; 0 takes the next
  bool left = false;
  bool plus = false;
  bool space = false;
  bool alternate = false;
  bool zeros = false;
  size_t width = 0;
  std::optional<size_t> precision;
  IntegerSize size = IntegerSize::kInt;
  char conversion = 0;
};

/// Pads a text of so many characters to the directive's width.
void AppendPadded(std::string& out, const Directive& directive, std::string_view text, size_t characters) {
  const size_t padding = directive.width > characters ? directive.width - characters : 0;
  if (!directive.left) out.append(padding, ' ');
  out += text;
  if (directive.left) out.append(padding, ' ');
}

/// A text, cut to the precision; both count characters, so that no character is split.
void AppendText(std::string& out, const Directive& directive, std::string_view text) {
  if (directive.width == 0 && !directive.precision) {
    out += text;
    return;
  }
  size_t characters = 0;
  size_t end = 0;
  while (end < text.size() && (!directive.precision || characters < *directive.precision)) {
    end += ReadUtf8(text, end).length;
    ++characters;
  }
  AppendPadded(out, directive, text.substr(0, end), characters);
}

bool AppendInteger(std::string& out, const Directive& directive, int64_t argument) {
  const bool isSigned = directive.conversion == 'd' || directive.conversion == 'i';
  const int unused = 64 - static_cast<int>(directive.size);
  const uint64_t bits = static_cast<uint64_t>(argument) << unused;
  const bool negative = isSigned && static_cast<int64_t>(bits) < 0;
  const uint64_t value = bits >> unused;
  const uint64_t magnitude = negative ? (~value + 1) << unused >> unused : value;

  fmt::basic_memory_buffer<char, 24> digits;
  switch (directive.conversion) {
    case 'x':
      fmt::format_to(std::back_inserter(digits), FMT_STRING("{:x}"), magnitude);
      break;
    case 'X':
      fmt::format_to(std::back_inserter(digits), FMT_STRING("{:X}"), magnitude);
      break;
    case 'o':
      fmt::format_to(std::back_inserter(digits), FMT_STRING("{:o}"), magnitude);
      break;
    default:
      fmt::format_to(std::back_inserter(digits), FMT_STRING("{}"), magnitude);
  }
  std::string_view text(digits.data(), digits.size());
  if (magnitude == 0 && directive.precision == size_t{0}) text = "";

  std::string_view prefix;
  if (isSigned) prefix = negative ? "-" : directive.plus ? "+" : directive.space ? " " : "";
  if (directive.alternate && magnitude != 0 && directive.conversion == 'x') prefix = "0x";
  if (directive.alternate && magnitude != 0 && directive.conversion == 'X') prefix = "0X";

  size_t zeros = directive.precision.value_or(0) > text.size() ? *directive.precision - text.size() : 0;
  if (directive.alternate && directive.conversion == 'o' && zeros == 0 && (text.empty() || text[0] != '0')) zeros = 1;
  const size_t length = prefix.size() + text.size();
  if (directive.zeros && !directive.left && !directive.precision && directive.width > length) {
    zeros = directive.width - length;
  }
  const size_t padding = directive.width > length + zeros ? directive.width - length - zeros : 0;
  if (!directive.left) out.append(padding, ' ');
  out += prefix;
  out.append(zeros, '0');
  out += text;
  if (directive.left) out.append(padding, ' ');
  return true;
}

void AppendReal(std::string& out, const Directive& directive, double value) {
  std::string specification = "{:";
  specification += directive.left ? "<" : directive.zeros ? "" : ">";
  specification += directive.plus ? "+" : directive.space ? " " : "";
  if (directive.alternate) specification += '#';
  if (directive.zeros && !directive.left) specification += '0';
  if (directive.width > 0) specification += fmt::format_int(directive.width).c_str();
  specification += '.';
  specification += fmt::format_int(directive.precision.value_or(6)).c_str();
  specification += directive.conversion;
  specification += '}';
  fmt::vformat_to(std::back_inserter(out), specification, fmt::make_format_args(value));
}

void AppendValue(std::string& out, const Directive& directive, TovaTypeRef value) {
  if (TovaGetTypeID(value) == kTovaTypeString) {
    return AppendText(out, directive, static_cast<TovaStringRef>(value)->text);
  }
  std::string description;
  Describe(value, description, 0);
  AppendText(out, directive, description);
}

/// Renders an argument; false when it is not of the kind that the conversion wants.
bool AppendArgument(std::string& out, const Directive& directive, const TovaFormatArgument& argument) {
  std::string text;
  switch (directive.conversion) {
    case 'd':
    case 'i':
    case 'u':
    case 'x':
    case 'X':
    case 'o':
      return argument.kind == kTovaFormatArgumentInteger && AppendInteger(out, directive, argument.content.integer);
    case 'c':
      if (argument.kind != kTovaFormatArgumentInteger) return false;
      AppendUtf8(text, static_cast<char32_t>(argument.content.integer));
      AppendPadded(out, directive, text, 1);
      return true;
    case 's':
      if (argument.kind != kTovaFormatArgumentText) return false;
      AppendLossy(text, argument.content.text ? argument.content.text : "(null)");
      AppendText(out, directive, text);
      return true;
    case '@':
      if (argument.kind != kTovaFormatArgumentValue) return false;
      AppendValue(out, directive, argument.content.value);
      return true;
    default:
      if (argument.kind != kTovaFormatArgumentReal) return false;
      AppendReal(out, directive, argument.content.real);
      return true;
  }
}

/// Renders a format with its arguments, front to back.
class Formatter {
 public:
  Formatter(std::string_view format, const TovaFormatArgument* arguments, size_t count)
      : rest_(format), arguments_(arguments), count_(count) {}

  /// None when the format and the arguments do not fit.
  std::optional<std::string> Run() {
    out_.reserve(rest_.size() + 32);
    while (true) {
      const size_t percent = rest_.find('%');
      out_ += rest_.substr(0, percent);
      if (percent == std::string_view::npos) return std::move(out_);
      rest_.remove_prefix(percent + 1);
      if (Take('%')) {
        out_ += '%';
      } else if (!RenderDirective()) {
        return std::nullopt;
      }
    }
  }

 private:
  bool Take(char wanted) {
    if (rest_.empty() || rest_[0] != wanted) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool AtDigit() const { return !rest_.empty() && rest_[0] >= '0' && rest_[0] <= '9'; }

  /// A decimal number, 0 without digits; none above the limit.
  std::optional<size_t> TakeNumber() {
    size_t number = 0;
    for (; AtDigit(); rest_.remove_prefix(1)) {
      number = number * 10 + static_cast<size_t>(rest_[0] - '0');
      if (number > kMaximumField) return std::nullopt;
    }
    return number;
  }

  /// "1$", when it stands there.
  bool TakePosition(Directive& directive) {
    const std::string_view start = rest_;
    if (!AtDigit() || rest_[0] == '0') return true;
    const auto number = TakeNumber();
    if (!number) return false;
    if (Take('$')) {
      directive.argument = *number;
    } else {
      rest_ = start;
    }
    return true;
  }

  void TakeFlags(Directive& directive) {
    for (; !rest_.empty(); rest_.remove_prefix(1)) {
      switch (rest_[0]) {
        case '-':
          directive.left = true;
          break;
        case '+':
          directive.plus = true;
          break;
        case ' ':
          directive.space = true;
          break;
        case '#':
          directive.alternate = true;
          break;
        case '0':
          directive.zeros = true;
          break;
        default:
          return;
      }
    }
  }

  /// The length modifier and the conversion; false for pairs that printf does not know.
  bool TakeConversion(Directive& directive) {
    constexpr std::string_view kIntegers = "diuxXo";
    constexpr std::string_view kReals = "fFeEgG";
    std::string_view allowed = kIntegers;
    if (Take('h')) {
      directive.size = Take('h') ? IntegerSize::kChar : IntegerSize::kShort;
    } else if (Take('l')) {
      directive.size = IntegerSize::kLong;
      if (!Take('l') && !rest_.empty() && kReals.find(rest_[0]) != std::string_view::npos) allowed = kReals;
    } else if (Take('z') || Take('j') || Take('t')) {
      directive.size = IntegerSize::kLong;
    } else {
      allowed = "diuxXofFeEgGcs@";
    }
    if (rest_.empty() || allowed.find(rest_[0]) == std::string_view::npos) return false;
    directive.conversion = rest_[0];
    rest_.remove_prefix(1);
    return true;
  }

  /// The argument that a directive means; null when there is none, or numbered directives mix with others.
  const TovaFormatArgument* Argument(const Directive& directive) {
    const bool numbered = directive.argument > 0;
    if (numbered ? next_ > 0 : numbered_) return nullptr;
    numbered_ = numbered;
    const size_t index = numbered ? directive.argument - 1 : next_++;
    return index < count_ ? &arguments_[index] : nullptr;
  }

  bool RenderDirective() {
    Directive directive;
    if (!TakePosition(directive)) return false;
    TakeFlags(directive);
    const auto width = TakeNumber();
    if (!width) return false;
    directive.width = *width;
    if (Take('.')) {
      directive.precision = TakeNumber();
      if (!directive.precision) return false;
    }
    if (!TakeConversion(directive)) return false;
    const TovaFormatArgument* argument = Argument(directive);
    return argument && AppendArgument(out_, directive, *argument);
  }

  std::string_view rest_;
  const TovaFormatArgument* arguments_;
  size_t count_;
  size_t next_ = 0;
  bool numbered_ = false;
  std::string out_;
};

}  // namespace
}  // namespace Tova

TovaStringRef TovaStringCreateWithFormat(TovaStringRef format, const TovaFormatArgument* arguments, size_t count) {
  if (!format || (!arguments && count > 0)) return nullptr;
  return Tova::Guarded([&]() -> TovaStringRef {
    auto text = Tova::Formatter(format->text, arguments, count).Run();
    return text ? Tova::NewString(std::move(*text)) : nullptr;
  });
}
