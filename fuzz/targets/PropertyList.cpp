// A property list is read; what was read is written, and read again as the same.
#include <Tova/Tova.hpp>

#include "fuzz/Target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  TovaStringRef reason = nullptr;
  const auto bytes = Tova::Adopt(TovaDataCreate(data, size));
  const auto list = Tova::Adopt(TovaPropertyListCreateWithData(bytes.get(), &reason));
  const auto error = Tova::Adopt(reason);
  fuzz::Check(!list == static_cast<bool>(error), "what is refused has a reason, and nothing else has one");
  if (!list) return 0;
  fuzz::Check(static_cast<bool>(Tova::Adopt(TovaCopyDescription(list.get()))), "every value has a description");
  const auto written = Tova::Adopt(TovaPropertyListCreateXMLData(list.get()));
  fuzz::Check(static_cast<bool>(written), "what was read can be written");
  const auto again = Tova::Adopt(TovaPropertyListCreateWithData(written.get(), nullptr));
  fuzz::Check(TovaEqual(list.get(), again.get()), "what was written is read as the same");
  fuzz::Check(TovaHash(list.get()) == TovaHash(again.get()), "equal values have equal hashes");
  Tova::Adopt(TovaPropertyListCreateXMLElement(list.get(), 3));
  return 0;
}
