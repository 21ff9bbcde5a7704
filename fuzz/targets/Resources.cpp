// Resource files and families. The first byte says where the rest lies: 'f' a resource fork alone, 'o' and 'h' the two
// forms of a file with both forks, 's' a sidecar, 'F' one family in a suitcase, 'N' one bitmap font beside it, 'P' one
// piece of an outline file, 'L' what stands between its first and its last piece.
#include <span>

#include "Platform/ForkFormats.h"
#include "Platform/ResourceFile.h"
#include "fuzz/RichFont.h"
#include "fuzz/Target.h"

namespace {

using fuzz::Bytes;
using test::SuitcaseBuilder;

/// Looks at every resource that a fork claims to have of the types that the library knows.
void Walk(Tova::ByteView fork) {
  const auto file = Tova::ResourceFile::Open(fork);
  for (const char* type : {"sfnt", "FOND", "NFNT", "POST"}) {
    const uint32_t code = Tova::ByteView(reinterpret_cast<const uint8_t*>(type), 4).U32(0);
    const Tova::ResourceList list = file ? file->List(code) : Tova::ResourceList();
    fuzz::Check(list.Count() <= 65536, "a type has as many resources as 16 bits count");
    for (uint32_t i = 0; i < list.Count(); ++i) {
      const auto resource = list[i];
      fuzz::Check(!resource || (resource->data.Size() <= fork.Size() && resource->name.Size() <= 255),
                  "a resource lies in its fork");
    }
  }
}

void Report(const SuitcaseBuilder& suitcase) {
  fuzz::ReportOn(suitcase.Build().Data(), "Family", fuzz::Messages::kFew);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return -1;
  const Bytes rest(data + 1, data + size);
  switch (data[0]) {
    case 'f':
      Walk(Tova::ByteView(rest.data(), rest.size()));
      fuzz::ReportOn(rest, "Suitcase", fuzz::MessagesFor(size));
      return 0;
    case 'o':
      fuzz::ReportOn(test::OneFile({}, rest, "FFIL").Data(), "Suitcase", fuzz::MessagesFor(size));
      return 0;
    case 'h':
      fuzz::ReportOn(test::HeaderForm({}, rest, "LWFN").Data(), "Suitcase", fuzz::MessagesFor(size));
      return 0;
    case 's':
      if (const auto parts = Tova::ReadSidecar(Tova::ByteView(rest.data(), rest.size()))) {
        Walk(parts->resource.value_or(Tova::ByteView()));
      }
      fuzz::ReportOn(rest, "Suitcase", fuzz::MessagesFor(size));
      return 0;
    case 'F':
      Report(SuitcaseBuilder().Add("FOND", 128, rest, "Family").Add("NFNT", 300, Bytes(26)));
      return 0;
    case 'N':
      Report(fuzz::RichSuitcase().Add("NFNT", 301, rest));
      return 0;
    case 'P':
      Report(test::OutlineFile({rest}));
      return 0;
    case 'L': {
      const std::vector<Bytes> pieces = test::OutlinePieces();
      Report(test::OutlineFile({pieces[0], rest, pieces[2]}));
      return 0;
    }
    default:
      return -1;
  }
}
