// A property list is read; what was read is written, and what was written is read again as the same.
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
  // Characters that XML cannot carry are replaced when a list is first written; from then on it stays the same.
  const auto second = Tova::Adopt(TovaPropertyListCreateWithData(written.get(), nullptr));
  const auto rewritten = Tova::Adopt(TovaPropertyListCreateXMLData(second.get()));
  const auto third = Tova::Adopt(TovaPropertyListCreateWithData(rewritten.get(), nullptr));
  fuzz::Check(TovaEqual(second.get(), third.get()), "what was written is read as the same");
  fuzz::Check(TovaHash(second.get()) == TovaHash(third.get()), "equal values have equal hashes");
  Tova::Adopt(TovaPropertyListCreateXMLElement(list.get(), 3));
  return 0;
}
