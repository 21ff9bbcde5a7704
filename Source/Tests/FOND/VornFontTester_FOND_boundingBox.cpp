#include "Tests/FOND/VornFontTester_FOND_boundingBox.h"

namespace {

/// A style and four coordinates.
constexpr int64_t kBoxSize = 10;

}  // namespace

void VornFontTester_FOND_boundingBox::CheckBoundingBox_FOND(const FTFont_FOND& iFamily) const {
  const FTFont_FOND::Position tBoxes = iFamily.GetBoundingBoxes();
  if (!tBoxes) return;
  const At tHere(*this, {.offset = *tBoxes});
  if (iFamily.Length() < *tBoxes) {
    ReportResult(Severity::kFatalError, "The bounding box data does not lie within the resource limits.");
  }
  if (iFamily.Length() < *tBoxes + kBoxSize * iFamily.GetBoundingBoxCount()) {
    ReportResult(Severity::kFatalError, "The bounding box data exceeds the resource limits.");
  }
}
