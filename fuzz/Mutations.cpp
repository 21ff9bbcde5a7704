// Reports on damaged copies of fonts: mutations [SEED [COUNT [FONT...]]]. By default the same seed and number every
// time, and hinted fonts of unlike makers; those that are not installed are left out, and without any the end is 77.
// The mutant at hand lies in the folder of temporary files, and stays there when it ends the program.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "Platform/ByteView.h"
#include "fuzz/Target.h"
#include "support/TemporaryFolder.h"

namespace {

using fuzz::Bytes;
using Tova::ByteView;

constexpr uint32_t kSeed = 20240229;
constexpr size_t kFonts = 600;
constexpr int kSkipped = 77;
constexpr size_t kDirectoryAt = 12;
constexpr size_t kEntrySize = 16;

// The last has device metrics and kerning.
constexpr const char* kBaseFonts[] = {
    "/usr/share/fonts/truetype/liberation/LiberationMono-Regular.ttf",  // package fonts-liberation
    "/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Bold.ttf",         // fonts-dejavu-core
    "/usr/share/fonts/truetype/gentium/Gentium-I.ttf",                  // fonts-sil-gentium
};

/// Damages fonts at random; the engine's numbers are the same everywhere.
class Mutator {
 public:
  explicit Mutator(uint32_t seed) : engine_(seed) {}
  Bytes Mutate(Bytes font) {
    const size_t kind = Below(8);
    if (kind == 0) font.resize(Below(font.size()));
    if (kind == 1 || kind == 2) {  // each of two tags gets the other's offset and length
      const auto first = font.begin() + static_cast<ptrdiff_t>(RandomEntry(font) + 8);
      const auto second = font.begin() + static_cast<ptrdiff_t>(RandomEntry(font) + 8);
      if (first != second) std::swap_ranges(first, first + 8, second);
    }
    if (kind == 3) ChangeBytes(font, 0, RandomEntry(font) + kEntrySize, 1 + Below(4));
    if (kind < 4) return font;
    // Bytes of a few tables, mostly near their starts, where the counts and offsets are.
    for (size_t tables = 1 + Below(3); tables > 0; --tables) {
      const ByteView entry = ByteView(font.data(), font.size()).Slice(RandomEntry(font), kEntrySize);
      const size_t offset = entry.U32(8), length = entry.U32(12);
      ChangeBytes(font, offset, Below(2) == 0 ? std::min<size_t>(length, 64) : length, 1 + Below(16));
    }
    return font;
  }

 private:
  size_t Below(size_t limit) { return limit == 0 ? 0 : engine_() % limit; }
  size_t RandomEntry(const Bytes& font) { return kDirectoryAt + kEntrySize * Below(font.at(5)); }
  void ChangeBytes(Bytes& font, size_t start, size_t span, size_t count) {
    static constexpr uint8_t kExtremes[] = {0x00, 0x01, 0x7F, 0x80, 0xFF};
    for (; count > 0; --count) {
      const size_t at = start + Below(span);
      if (at < font.size()) font[at] = static_cast<uint8_t>(Below(2) == 0 ? engine_() : kExtremes[Below(5)]);
    }
  }

  std::mt19937 engine_;
};

}  // namespace

int main(int count, char** arguments) {  // NOLINT(bugprone-exception-escape): what escapes is a failure
  const auto number = [&](int i, size_t otherwise) {
    return i < count ? std::strtoul(arguments[i], nullptr, 10) : otherwise;
  };
  std::vector<std::string> paths(arguments + std::min(count, 3), arguments + count);
  if (paths.empty()) paths.assign(std::begin(kBaseFonts), std::end(kBaseFonts));
  std::vector<Bytes> bases;
  for (const std::string& path : paths) {
    std::ifstream file(path, std::ios::binary);
    if (file) bases.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  if (bases.empty()) {
    std::fputs("None of the fonts is there.\n", stderr);
    return kSkipped;
  }
  const test::TemporaryFolder folder;
  Mutator mutator(static_cast<uint32_t>(number(1, kSeed)));
  for (size_t i = 0, mutants = number(2, kFonts); i < mutants; ++i) {
    const Bytes mutant = mutator.Mutate(bases[i % bases.size()]);
    folder.Write("mutant.ttf", mutant);
    fuzz::ReportOn(mutant);
  }
}
