#pragma once

#include <cstdint>
#include <vector>

#include "TableAccess/AncillaryClasses/FTLayoutChains.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// What the accessors of 'morx' and 'mort' share: the chains, through which fonts substitute and rearrange glyphs (see
/// FTLayoutChains). Needs no other table.
///
/// Operations that look for chains read them anew and throw "The chain head points beyond the end of the table" when
/// one does not fit, or its length is too small for it or leads beyond the table; "The feature entry points beyond the
/// end of the table" when an entry that is asked for does.
class FTFontTable_Chains : public FTFontTable {
 public:
  using FTFontTable::FTFontTable;
  FTFontTable_Chains() = default;
  explicit FTFontTable_Chains(const FTFontTable& iTable) : FTFontTable(iTable) {}

  virtual uint32_t Version() const = 0;
  uint64_t GetChainCount() const { return ReadChains().size(); }
  /// 0 for a chain beyond the last.
  uint64_t GetFeatureCount(uint64_t iChain) const;
  /// False for a chain or an index beyond the last.
  bool GetIndFeature(uint64_t iChain, uint64_t iIndex, FTLayoutFeature& oFeature) const;
  /// How many features are on by default: the entries (those of type 0 apart) whose enable flags are not 0 and are all
  /// set in the default flags of the chain; a chain without such an entry counts as one when any of its subtables runs
  /// by default. 0 exactly when nothing runs unless the user asks for it.
  uint64_t CountDefaultFeatures() const;

  virtual FTLayoutChains Chains() const = 0;

 private:
  class Work;
  virtual const char* SourceFile() const = 0;
  std::vector<FTLayoutChain> ReadChains() const;
  void RequireFeature(uint64_t iAt) const;
  uint64_t CountDefaultEntries(const FTLayoutChain& iChain, Work& ioWork) const;
  bool RunsByDefault(const FTLayoutChain& iChain, Work& ioWork) const;
};
