#include <VornFontTest/VornFontTest.h>
#include <gtest/gtest.h>

#include <Tova/Tova.hpp>
#include <cstdlib>
#include <new>

#include "support/GlyphBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/Values.h"

namespace {

// Allocations of this thread until one fails, once; none fails while it is negative.
thread_local long allocationsLeft = -1;

void* Allocate(size_t size) {
  if (allocationsLeft >= 0 && allocationsLeft-- == 0) throw std::bad_alloc();
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(size_t size) { return Allocate(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  try {
    return Allocate(size);
  } catch (...) {
    return nullptr;
  }
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

namespace {

TEST(OutOfMemory, EveryAllocationMayFailWithoutAnExceptionOrACrash) {
  const test::TemporaryFolder folder;
  test::FontBuilder font = test::OutlineFont({test::SquareGlyph(9, {0x7B}), {}, test::CompoundGlyph({{0x0801, 0}})});
  font.Table("name", test::NameTable({{3, "Some"}, {4, "Some"}})).Table("post", test::PostTable());
  const auto url = test::FileUrl(folder.Write("font.ttf", font.Build()));
  const auto types = test::Array({kVornFontTestStructureTest, kVornFontTestUsabilityTest});
  const auto tests = Tova::Adopt(VornFontTestCopyAvailableTests(types.get()));
  const auto options = test::Dictionary(
      {{kVornFontTestArrayKey, tests.get()}, {kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeFull}});

  testing::internal::CaptureStderr();
  bool failed = true;
  long allocations = 0;
  for (; failed; ++allocations) {
    allocationsLeft = allocations;
    const Tova::Dictionary report = Tova::Adopt(VornFontTestCreateReport(url.get(), options.get()));
    failed = allocationsLeft < 0;
    allocationsLeft = -1;
    EXPECT_TRUE(failed || report) << "the failures before left something broken";
  }
  testing::internal::GetCapturedStderr();
  EXPECT_GT(allocations, 200);
}

}  // namespace
