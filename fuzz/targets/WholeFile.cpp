// A report on a file of any kind. Bytes that no font starts with are those of a spliced font, or of resources.
#include <VornFontTest/FontFiles.hpp>

#include "Platform/ByteView.h"
#include "fuzz/Target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const Tova::ByteView bytes(data, size);
  fuzz::ReportOn({data, size}, VornFontTest::IsFontScaler(bytes.U32(0)) ? nullptr : "any.sfont",
                 fuzz::MessagesFor(size));
  return 0;
}
