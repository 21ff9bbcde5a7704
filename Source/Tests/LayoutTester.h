#pragma once

#include "Tests/LookupChecker.h"
#include "Tests/TableTester.h"

/// Base of the tests of layout tables ('morx' and its like): findings are gathered for each part of the table, and the
/// work is bounded (see LayoutReport). The tests read the raw bytes, so that no finding hides another.
template <class Table>
class LayoutTester : public TableTester<Table> {
 public:
  using TableTester<Table>::TableTester;

  void CheckTable(const Table& iTable) const final {
    LayoutReport tReport(*this, iTable.GetSize());
    try {
      Examine(iTable, {iTable.Bytes(), this->SfntFont().CountFontGlyphs(), true, tReport});
      tReport.Leave();
    } catch (const LayoutReport::GivenUp&) {  // reported already
    }
  }

 protected:
  /// The checks, in the order in which their work counts.
  virtual void Examine(const Table& iTable, const LayoutTable& iBytes) const = 0;

  /// Whether the table has as many bytes as its header needs.
  static bool HasSize(const LayoutTable& iBytes, uint64_t iNeeded, uint16_t iRank) {
    if (iBytes.Size() >= iNeeded) return true;
    iBytes.report.Report(iRank, Severity::kFatalError,
                         "The table is too small; it is only %d bytes in size and should be at least %d",
                         {iBytes.Size(), iNeeded});
    return false;
  }
  static void ReportVersion(const LayoutTable& iBytes, uint32_t iVersion, uint16_t iRank) {
    iBytes.report.Report(iRank, Severity::kMajorError, "Bad version number: 0x%08lX", {iVersion}, {0});
  }
};
