#include "TableAccess/AncillaryClasses/FTWorkBudget.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "TableAccess/FTLimits.h"

FTWorkBudget::FTWorkBudget(uint64_t iFileSize)
    : _fAllowed(std::min(FTLimits::Get().workAllowed + FTLimits::Get().workAllowedPerByte * iFileSize,
                         FTLimits::Get().mostWorkAllowed)),
      _fLeft(_fAllowed) {}

void FTWorkBudget::End() {
  _fEnded = true;
  _fLeft = 0;
  throw FTWorkBudgetEnd(_fAllowed);
}

FTWorkBudgetEnd::FTWorkBudgetEnd(uint64_t iSteps)
    : FTException("iSteps > _fLeft", -1, "TableAccess/AncillaryClasses/FTWorkBudget", __LINE__) {
  std::snprintf(_fText.data(), _fText.size(),
                "The examination was given up after %" PRIu64
                " steps; parts of the font refer to the same bytes over and over",
                iSteps);
}
