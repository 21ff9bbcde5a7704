// Formats as a translator's string table may hold them. An input that starts with '<' is such a table, and all its
// texts are formats; of any other, the first four bytes choose the arguments and the rest is the format.
#include <Tova/Tova.hpp>
#include <array>
#include <limits>

#include "fuzz/Target.h"

namespace {

using Arguments = std::array<Tova::FormatArgument, 4>;

constexpr size_t kMostPerDirective = 5000;  // bytes that the widest value here can take, and its padding

/// Arguments of every kind; each byte chooses one.
Arguments ChooseArguments(const uint8_t* choice) {
  static const Tova::Array kValue =
      Tova::MakeArray({Tova::MakeString("text \xF0\x9D\x94\xB8").get(), kTovaBooleanTrue});
  static const std::array<Tova::FormatArgument, 14> kArguments = {0,
                                                                  -1,
                                                                  65,
                                                                  0x1F600,
                                                                  0xD800,
                                                                  std::numeric_limits<int64_t>::min(),
                                                                  std::numeric_limits<uint64_t>::max(),
                                                                  0.5,
                                                                  -1e300,
                                                                  std::numeric_limits<double>::quiet_NaN(),
                                                                  std::numeric_limits<double>::infinity(),
                                                                  "a text",
                                                                  kValue,
                                                                  static_cast<TovaTypeRef>(nullptr)};
  const auto chosen = [&](size_t i) { return kArguments[choice[i] % kArguments.size()]; };
  return {chosen(0), chosen(1), chosen(2), chosen(3)};
}

void Format(TovaStringRef format, const uint8_t* choice) {
  const Arguments arguments = ChooseArguments(choice);
  const auto text = Tova::Adopt(TovaStringCreateWithFormat(format, arguments.data(), arguments.size()));
  const std::string_view written = Tova::Text(text);
  fuzz::Check(written.size() <= (Tova::Text(format).size() + 1) * kMostPerDirective, "a format does not explode");
  fuzz::Check(!text || Tova::MakeString(written), "what is formatted is valid UTF-8");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 4) return -1;
  if (data[0] != '<') {
    Format(Tova::Adopt(TovaStringCreateWithLossyUTF8(reinterpret_cast<const char*>(data + 4), size - 4)).get(), data);
    return 0;
  }
  const auto bytes = Tova::Adopt(TovaDataCreate(data, size));
  const auto list = Tova::Adopt(TovaPropertyListCreateWithData(bytes.get(), nullptr));
  const TovaDictionaryRef table = Tova::AsDictionary(list.get());
  for (TovaIndex i = 0; i < TovaDictionaryGetCount(table); ++i) {
    for (const uint8_t kind : {uint8_t{0}, uint8_t{7}, uint8_t{11}, uint8_t{12}}) {
      const uint8_t choice[] = {kind, kind, kind, kind};
      Format(Tova::AsString(TovaDictionaryGetValueAtIndex(table, i)), choice);
    }
  }
  return 0;
}
