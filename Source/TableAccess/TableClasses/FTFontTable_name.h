#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <vector>

#include "TableAccess/AncillaryClasses/FTNameTableEntry.h"
#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The naming table. Bytes: format u16, record count u16, string storage offset u16, then records of 12 bytes
/// (platform, script, language, name code, length, offset into the storage; all u16). See "name — Naming Table" of the
/// OpenType specification. Needs no other table.
///
/// A record that starts or ends outside the table makes reading throw, and the table then has no names; one of length 0
/// may stand anywhere. Records that are claimed but lie beyond the table are none.
class FTFontTable_name : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_name, FTFontTable, "name")
  using Entries = std::vector<FTNameTableEntry>;

  void ReadDataInternal() const override;

  virtual bool operator==(const FTFontTable_name& iOther) const;
  uint16_t Format() const;
  uint16_t StringBaseOffset() const;
  const Entries& Names() const;
  uint64_t NameCount() const { return Names().size(); }
  /// Null for an index beyond the last.
  const FTNameTableEntry* GetIndName(uint64_t iIndex) const;
  /// The first entry of the name code whose platform, script and language are those given; all bits set in one of these
  /// three matches every value. Null without one; oIndex is set only with one.
  const FTNameTableEntry* FindName(uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage,
                                   uint64_t& oIndex) const;
  /// These change the accessor's own entries, never the bytes. Replaces the text of an entry; false without one.
  bool SetIndName(uint64_t iIndex, const Tova::String& iName);
  /// Replaces the text of the entry that FindName finds, or adds an entry of these codes.
  void SetName(uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage, const Tova::String& iName);
  /// Removes the entry that FindName finds; false without one.
  bool DeleteName(uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage);
  /// Removes all entries.
  void DeleteData();

 private:
  mutable uint16_t _fFormat = 0;
  mutable uint16_t _fStringBaseOffset = 0;
  mutable Entries _fNames;
};
