#include "TableAccess/TableClasses/FTFontTable_mort.h"

#include "TableAccess/TableClasses/FTTableOwner.h"
#include "TableAccess/TableClasses/FeatureChains.h"

uint64_t FTFontTable_mort::CountDefaultFeatures() const {
  return FeatureChains::CountDefaultFeatures(Bytes(), FeatureChains::CountWidth::k16Bits, Owner()->GetWorkBudget());
}
