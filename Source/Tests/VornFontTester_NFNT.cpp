#include "Tests/VornFontTester_NFNT.h"

namespace {

constexpr int64_t kHeaderSize = 26;

}  // namespace

bool VornFontTester_NFNT::ExecuteTest() const {
  const At tHere(*this, {.table = FTTag("NFNT")});
  CheckNFNT(static_cast<const FTFont_NFNT&>(*GetFont()));
  return true;
}

void VornFontTester_NFNT::CheckNFNT(const FTFont_NFNT& iFont) const {
  if (iFont.Length() < kHeaderSize) {
    ReportResult(Severity::kFatalError, "NFNT size (%d bytes) too small; it should be at least %d bytes",
                 {iFont.Length(), kHeaderSize});
    return;
  }
  // quirk: signed-characters. One above 0x7FFF is below all others.
  const int16_t tFirst = iFont.S16At(2);
  const int16_t tLast = iFont.S16At(4);
  if (tFirst > tLast) {
    ReportResult(Severity::kMajorError, "First character (0x%04X) is greater than last character (0x%04X)",
                 {tFirst, tLast});
  }
}
