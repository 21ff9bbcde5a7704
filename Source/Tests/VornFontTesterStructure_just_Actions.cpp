#include <string>
#include <vector>

#include "Tests/VornFontTesterStructure_just.h"

// Postcompensation: a lookup gives glyphs the offset of a list of actions: count u32, then actions of a header (class
// u16, type u16, length u32 with the header) and data by type: 0 decomposition (lower and upper limit 16.16, order u16,
// glyph count u16, glyphs u16), 1 unconditional addition (glyph u16), 2 conditional addition (threshold 16.16, glyph to
// add u16 or 0xFFFF, glyph to substitute u16), 3 stretching (nothing), 4 ductile glyph (axis tag u32; minimum, value
// without a stretch, maximum 16.16), 5 repeated addition (flags u16, glyph u16).

namespace {

constexpr uint64_t kActionHeaderSize = 8;

enum ActionType : uint16_t { kDecompose, kAdd, kAddConditionally, kStretch, kDuctile, kAddRepeatedly, kTypeCount };

/// Bytes of an action of a type, header and data; of decomposition without its glyphs.
constexpr uint32_t kActionSizes[kTypeCount] = {20, 10, 16, 8, 24, 12};

constexpr uint64_t kDecomposedCount = kActionHeaderSize + 10;

/// A tag for people; bytes that are no printable ASCII are shown as "?".
std::string TagText(uint32_t iTag) {
  std::string tText;
  for (int tShift = 24; tShift >= 0; tShift -= 8) {
    const auto tByte = static_cast<char>(iTag >> tShift & 0xFF);
    tText += tByte >= 0x20 && tByte <= 0x7E ? tByte : '?';
  }
  return tText;
}

}  // namespace

void VornFontTesterStructure_just::CheckPostcompensation(const LayoutTable& iBytes, Data& ioData) const {
  if (ioData.postcompensation == 0) return;
  const uint64_t tAt = ioData.postcompensation;
  std::set<uint16_t> tLists;
  for (const LookupPiece& tPiece : LookupChecker(iBytes, tAt, iBytes.Size(), "postcompensation table").Check()) {
    if (tPiece.value != 0) tLists.insert(tPiece.value);
  }
  for (const uint16_t tList : tLists) CheckActions(iBytes, tAt + tList, ioData);
}

void VornFontTesterStructure_just::CheckActions(const LayoutTable& iBytes, uint64_t iList, Data& ioData) const {
  LayoutReport& tReport = iBytes.report;
  const uint32_t tCount = iBytes.bytes.U32(iList);
  bool tFits = iBytes.bytes.Holds(iList, 4);
  uint64_t tAt = iList + 4;
  for (uint32_t i = 0; i < tCount && tFits; ++i) {
    tFits = iBytes.bytes.Holds(tAt, kActionHeaderSize);
    if (!tFits) break;
    tReport.Spend(1);
    const Action tAction = {tAt, iBytes.bytes.U16(tAt), iBytes.bytes.U16(tAt + 2), iBytes.bytes.U32(tAt + 4)};
    ioData.classesInUse.insert(tAction.glyphClass);
    if (tAction.length < kActionHeaderSize || tAction.length > iBytes.Left(tAt)) {
      tReport.Report(kActionLength, Severity::kFatalError,
                     "The action at 0x%08lX has the length %lu; %lu bytes are left in the table",
                     {tAt, tAction.length, iBytes.Left(tAt)}, {tAt});
      return;
    }
    CheckAction(iBytes, tAction);
    tAt += tAction.length;
  }
  if (!tFits) {
    tReport.Report(kActionsBeyondTable, Severity::kFatalError, "The actions at 0x%08lX lie beyond the end of the table",
                   {iList}, {iList});
  }
}

void VornFontTesterStructure_just::CheckAction(const LayoutTable& iBytes, const Action& iAction) const {
  LayoutReport& tReport = iBytes.report;
  const LayoutWhere tWhere = {iAction.at};
  if (!CheckActionData(iBytes, iAction)) return;
  if (iAction.length % 4 != 0) {
    tReport.Report(kActionUnaligned, Severity::kTechnicalError,
                   "The action at 0x%08lX: the length %lu is not a multiple of four", {iAction.at, iAction.length},
                   tWhere);
  }
  if (iAction.type >= kTypeCount) {
    tReport.Report(kActionType, Severity::kMajorError, "The action at 0x%08lX has the unknown type %d",
                   {iAction.at, iAction.type}, tWhere);
    return;
  }
  if (iAction.glyphClass > kHighestClass) {
    tReport.Report(kActionClass, Severity::kTechnicalError, "The action at 0x%08lX has the class %d",
                   {iAction.at, iAction.glyphClass}, tWhere);
  }
  CheckActionGlyphs(iBytes, iAction);
  CheckActionValues(iBytes, iAction);
}

/// Whether the action is as long as its data.
bool VornFontTesterStructure_just::CheckActionData(const LayoutTable& iBytes, const Action& iAction) const {
  if (iAction.type >= kTypeCount) return true;
  uint64_t tNeeded = kActionSizes[iAction.type];
  if (iAction.type == kDecompose && iAction.length >= tNeeded) {
    tNeeded += uint64_t{2} * iBytes.bytes.U16(iAction.at + kDecomposedCount);
  }
  if (iAction.length >= tNeeded) return true;
  iBytes.report.Report(kActionData, Severity::kMajorError,
                       "The action at 0x%08lX has the length %lu; its data need %lu",
                       {iAction.at, iAction.length, tNeeded}, {iAction.at});
  return false;
}

void VornFontTesterStructure_just::CheckActionGlyphs(const LayoutTable& iBytes, const Action& iAction) const {
  const uint64_t tData = iAction.at + kActionHeaderSize;
  uint64_t tFirst = tData;
  uint64_t tCount = 0;
  switch (iAction.type) {
    case kDecompose:
      tFirst = tData + 12;
      tCount = iBytes.bytes.U16(iAction.at + kDecomposedCount);
      break;
    case kAdd:
      tCount = 1;
      break;
    case kAddConditionally:
      tFirst = tData + 4;
      tCount = 2;
      break;
    case kAddRepeatedly:
      tFirst = tData + 2;
      tCount = 1;
      break;
    default:
      break;
  }
  iBytes.report.Spend(tCount);
  for (uint64_t i = 0; i < tCount && iBytes.glyphCount != 0; ++i) {
    const uint16_t tGlyph = iBytes.bytes.U16(tFirst + 2 * i);
    const bool tIsNone = tGlyph == kDeletedGlyph && iAction.type == kAddConditionally && i == 0;
    if (tGlyph < iBytes.glyphCount || tIsNone) continue;
    iBytes.report.Report(kActionGlyph, Severity::kMajorError,
                         "The action at 0x%08lX uses glyph %d, which the font does not have", {iAction.at, tGlyph},
                         {iAction.at, tGlyph});
    return;
  }
}

void VornFontTesterStructure_just::CheckActionValues(const LayoutTable& iBytes, const Action& iAction) const {
  LayoutReport& tReport = iBytes.report;
  const Tova::ByteView tData = iBytes.bytes.From(iAction.at + kActionHeaderSize);
  const LayoutWhere tWhere = {iAction.at};
  if (iAction.type == kDecompose && tData.S32(0) >= tData.S32(4)) {
    tReport.Report(kActionLimits, Severity::kMinorError,
                   "The action at 0x%08lX: the lower limit is not below the upper limit", {iAction.at}, tWhere);
  }
  if (iAction.type == kDuctile) {
    if (tData.S32(4) > tData.S32(8) || tData.S32(8) > tData.S32(12)) {
      tReport.Report(kActionAxisLimits, Severity::kMinorError, "The action at 0x%08lX: the limits are out of order",
                     {iAction.at}, tWhere);
    }
    if (!HasAxis(tData.U32(0))) {
      tReport.Report(kActionAxis, Severity::kMinorError, "The action at 0x%08lX: the font has no axis '%@'",
                     {iAction.at, TagText(tData.U32(0))}, tWhere);
    }
  }
  if (iAction.type == kAddRepeatedly && tData.U16(0) != 0) {
    tReport.Report(kActionFlags, Severity::kTechnicalError, "The action at 0x%08lX: the flags are not zero",
                   {iAction.at}, tWhere);
  }
}

/// Looks among the axes of 'fvar': the offset of the axes u16 at 4, their count u16 at 8, the size of each u16 at 10;
/// an axis begins with its tag.
bool VornFontTesterStructure_just::HasAxis(uint32_t iTag) const {
  if (!SfntFont().HasTaggedTable(FTTag("fvar"))) return false;
  const Tova::ByteView tTable = SfntFont().GetTaggedTable(FTTag("fvar"))->Bytes();
  const uint64_t tAxes = tTable.U16(4);
  const uint64_t tAxisSize = tTable.U16(10);
  for (uint64_t i = 0; i < tTable.U16(8) && tTable.Holds(tAxes + i * tAxisSize, 4); ++i) {
    if (tTable.U32(tAxes + i * tAxisSize) == iTag) return true;
  }
  return false;
}
