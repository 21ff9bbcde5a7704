#pragma once

#include "Tests/VornFontTester.h"

/// Base of the tests of one sfnt table: finds the table, does not apply to a font without it, and gives every finding
/// the table for its place. Base is VornFontTester or a class of it that several tests share.
template <class Table, class Base = VornFontTester>
class TableTester : public Base {
 public:
  using Base::Base;

  bool ExecuteTest() const final {
    if (!this->SfntFont().HasTaggedTable(Table::kTag)) return false;
    const At tHere(*this, {.table = Table::kTag});
    CheckTable(*this->SfntFont().template FindTable<Table>());
    return true;
  }

 protected:
  /// The checks, in order.
  virtual void CheckTable(const Table& iTable) const = 0;
};
