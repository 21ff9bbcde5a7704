#pragma once

#include <array>
#include <cstdint>

#include "TableAccess/AncillaryClasses/FTException.h"

/// What the fonts of one file may have done for them in all, in steps: a step is a point, a record, a character or an
/// opcode that is decoded, compared or checked. Fonts, tables and glyph records may share their bytes, so that a few
/// kilobytes can ask for hours of work; honest files stay far below what their size explains.
///
/// Work is charged where it is done, before it is done. The budget belongs to the container of the fonts, which hands
/// it down; it must outlive them.
class FTWorkBudget {
 public:
  explicit FTWorkBudget(uint64_t iFileSize = 0);

  /// Throws FTWorkBudgetEnd when so many steps are more than what is left, and at every call from then on.
  void Charge(uint64_t iSteps) {
    if (iSteps > _fLeft) End();
    _fLeft -= iSteps;
  }
  bool HasEnded() const { return _fEnded; }
  /// Throws FTWorkBudgetEnd again when it has been thrown before.
  void RequireMore() {
    if (_fEnded) End();
  }

 private:
  [[noreturn]] void End();

  uint64_t _fAllowed;
  uint64_t _fLeft;
  bool _fEnded = false;
};

/// The end of a budget. Its message is the one for users, without the place in the source.
class FTWorkBudgetEnd : public FTException {
 public:
  explicit FTWorkBudgetEnd(uint64_t iSteps);
  const char* GetDetailedMessage() const override { return _fText.data(); }

 private:
  std::array<char, 160> _fText = {};
};
