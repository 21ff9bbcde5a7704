#include <Tova/Tova.h>

#include "Platform/File.h"
#include "Platform/ResourceFile.h"
#include "Platform/Value.h"

namespace Tova {
namespace {

/// The resources of a file: in its data fork where that is a resource file, else in its resource fork.
std::optional<ResourceFile> OpenResources(const File& file) {
  for (const Fork fork : {Fork::kData, Fork::kResource}) {
    const auto bytes = file.Open(fork);
    if (auto resources = bytes ? ResourceFile::Open(*bytes) : std::nullopt) return resources;
  }
  return std::nullopt;
}

}  // namespace
}  // namespace Tova

bool TovaURLHoldsResources(TovaURLRef url, const uint32_t* types, size_t count) {
  return Tova::Guarded([&] {
    const auto file = Tova::File::AtUrl(url);
    const auto resources = file ? Tova::OpenResources(*file) : std::nullopt;
    for (size_t i = 0; resources && i < count; ++i) {
      if (resources->List(types[i]).Count() > 0) return true;
    }
    return false;
  });
}
