#include "Tests/VornFontTesterStructure_hdmx.h"

#include "TableAccess/FontClasses/FTFont_sfnt.h"

void VornFontTesterStructure_hdmx::CheckTable(const FTFontTable_hdmx& iTable) const {
  const uint64_t tSize = iTable.GetUnswappedDataLength();
  const uint64_t tRecordCount = iTable.GetDeviceRecordCount();
  const uint64_t tRecordSize = iTable.GetDeviceRecordSize();
  if (iTable.GetVersion() != 0) {
    ReportResult(Severity::kTechnicalError, "The table version is %d; it should be 0.", {iTable.GetVersion()});
  }
  const uint64_t tExpected = tRecordCount * tRecordSize + 8;
  if (tSize < tExpected) {
    ReportResult(Severity::kMinorError, "The table is too small; it is only %d bytes long but should be %d.",
                 {tSize, tExpected});
  }
  if (tSize > tExpected + 3) {
    ReportResult(Severity::kMinorError,
                 "The table is too big and may be corrupt; it is %d bytes long but should be only %d.",
                 {tSize, tExpected});
  }
  if (tRecordCount > 255) {
    ReportResult(Severity::kMinorError,
                 "The table has %d device records, which is pointless since each device record must have a point size "
                 "from 0 to 255.",
                 {tRecordCount});
  }
  if (tRecordSize % 4 != 0) {
    ReportResult(Severity::kMinorError,
                 "The device records are %d bytes in size; their size should be a multiple of four.", {tRecordSize});
  }
  const uint64_t tNeeded = (uint64_t{iTable.GetFont()->CountFontGlyphs()} + 2 + 3) / 4 * 4;
  if (tNeeded > tRecordSize) {
    ReportResult(Severity::kMinorError,
                 "The device records are too small; they should be at least %d bytes but are only %d.",
                 {tNeeded, tRecordSize});
  }
  if (tNeeded < tRecordSize) {
    ReportResult(Severity::kMinorError,
                 "The device records are too large and may be corrupt; they should be %d bytes but are %d.",
                 {tNeeded, tRecordSize});
  }
}
