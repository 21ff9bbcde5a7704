#include "TableAccess/TableClasses/FTFontTable_morx.h"

#include "TableAccess/TableClasses/FTTableOwner.h"
#include "TableAccess/TableClasses/FeatureChains.h"

uint64_t FTFontTable_morx::CountDefaultFeatures() const {
  return FeatureChains::CountDefaultFeatures(Bytes(), FeatureChains::CountWidth::k32Bits, Owner()->GetWorkBudget());
}
