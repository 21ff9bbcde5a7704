#include "Tests/VornFontTesterStructure_cmap.h"

#include <string>

#include "TableAccess/FTLimits.h"

namespace {

/// So many records or more are no error, but no font has use for them.
constexpr uint32_t kUnusualRecordCount = 1025;

/// Whether the codes of an encoding are single bytes: platform 1 in the scripts that are not East Asian (1 Japanese, 2
/// and 25 Chinese, 3 Korean), and the ASCII compatibility encoding of the custom platform.
bool HasSingleByteCodes(uint32_t iPlatform, uint32_t iScript) {
  if (iPlatform == 1) return iScript == 0 || (iScript > 3 && iScript != 25);
  return iPlatform == 4 && iScript == 0;
}

}  // namespace

bool VornFontTesterStructure_cmap::ExecuteTest() const {
  const At tHere(*this, {.table = FTFontTable_cmap::kTag});
  if (!SfntFont().HasTaggedTable(FTFontTable_cmap::kTag)) {
    ReportResult(Severity::kFatalError, "The font has no 'cmap' table, required by the TrueType spec.");
    return false;
  }
  _fTable = SfntFont().FindTable<FTFontTable_cmap>();
  CheckHeader();
  for (uint64_t i = 0; i < GetTable()->EncodingCount(); ++i) CheckRecord(i);
  return true;
}

bool VornFontTesterStructure_cmap::MayCheck(uint64_t iCount) const {
  const bool tHadRoom = _fChecks <= FTLimits::Get().maxCmapChecks;
  GetTable()->GetFont()->SpendWork(iCount);
  _fChecks += iCount;
  if (_fChecks <= FTLimits::Get().maxCmapChecks) return true;
  if (tHadRoom) ReportResult(Severity::kFatalError, "The font has an invalid 'cmap' table");
  return false;
}

void VornFontTesterStructure_cmap::CheckHeader() const {
  const Tova::ByteView tBytes = GetTable()->Bytes();
  const uint32_t tVersion = tBytes.U16(0);
  const uint32_t tCount = tBytes.U16(2);
  if (tVersion != 0) {
    ReportResult(Severity::kTechnicalError, "Bad cmap version - 0x%08lX", {tVersion});
  }
  if (tCount == 0) ReportResult(Severity::kFatalError, "No subtables");
  if (tCount >= kUnusualRecordCount) {
    ReportResult(Severity::kMajorError, "Questionable number of cmap subtables, %d", {tCount});
  }
  if (8 * tCount + 4 > tBytes.Size()) {
    ReportResult(Severity::kFatalError,
                 "The encoding data requires more room (%d bytes) than there is in the table (%d bytes)",
                 {8 * tCount + 4, tBytes.Size()});
  }
}

void VornFontTesterStructure_cmap::CheckRecord(uint64_t iEncoding) const {
  const Tova::ByteView tBytes = GetTable()->Bytes();
  const FTEncoding& tSubtable = *GetTable()->GetIndEncoding(iEncoding);
  const uint64_t tOffset = tBytes.U32(4 + 8 * iEncoding + 4);
  const At tRecord(*this, {.offset = 4 + 8 * iEncoding, .part = "Encoding " + std::to_string(iEncoding)});
  if (tOffset > tBytes.Size()) {
    ReportResult(Severity::kFatalError, "Subtable %d offset (0x%08lX) is beyond the end of the table (0x%08lX)",
                 {iEncoding, tOffset, tBytes.Size()});
  }
  ValidatePlatformScriptLanguages(static_cast<uint32_t>(iEncoding), tSubtable.GetPlatform(), tSubtable.GetScript(),
                                  tSubtable.GetLanguage());
  const uint64_t tEnd = tSubtable.GetUnswappedMappingDataLength() + tOffset;
  if (tEnd > tBytes.Size()) {
    ReportResult(Severity::kFatalError, "Subtable %d ending offset (0x%08lX) is beyond the end of the table (0x%08lX)",
                 {iEncoding, tEnd, tBytes.Size()});
  }
  const At tMapping(*this, {.offset = tOffset});
  CheckSubtable(iEncoding, tSubtable);
}

void VornFontTesterStructure_cmap::CheckSubtable(uint64_t iEncoding, const FTEncoding& iSubtable) const {
  const Tova::ByteView tBytes = iSubtable.MappingBytes();
  const bool tSingleByte = HasSingleByteCodes(iSubtable.GetPlatform(), iSubtable.GetScript());
  switch (iSubtable.GetLongFormat()) {
    case 0:
      ValidCMap0(iEncoding, tBytes);
      break;
    case 0x20000:
      ValidCMap2(iEncoding, tBytes);
      break;
    case 0x40000:
      ValidCMap4(iEncoding, tBytes, tSingleByte);
      break;
    case 0x60000:
      ValidCMap6(iEncoding, tBytes, tSingleByte);
      break;
    case 0x80000:
      ValidCMap8(iEncoding, tBytes);
      break;
    case 0xA0000:
      ValidCMap10(iEncoding, tBytes);
      break;
    case 0xC0000:
      ValidCMap12(iEncoding, tBytes);
      break;
    case 0xD0000:
      ValidCMap13(iEncoding, tBytes);
      break;
    case 0xE0000:
      ValidCMap14(iEncoding, tBytes);
      break;
    default:
      break;
  }
}
