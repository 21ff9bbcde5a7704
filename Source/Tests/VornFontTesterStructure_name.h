#pragma once

#include <map>
#include <span>
#include <tuple>

#include "TableAccess/TableClasses/FTFontTable_name.h"
#include "Tests/TableTester.h"

/// Judges the naming table: its header, where its texts lie, and then record by record the codes, the order and the
/// text. When a text lies outside the table the records are not looked into, since the accessor has none then.
class VornFontTesterStructure_name : public TableTester<FTFontTable_name> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.name.structure",
      .types = {TestType::kStructure},
      .target = "name",
      .prefix = "name",
      .name = "Name table structure",
      .description =
          "Checks the header of the 'name' table, that its texts lie inside it, and the codes, the order and "
          "the text of every record."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_name& iTable) const override;

 private:
  struct Layout;
  using Codes = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>;  // platform, script, language, name code
  struct Walk;

  bool CheckHeader(const Layout& iLayout) const;
  void CheckLanguageTags(const Layout& iLayout) const;
  bool CheckStorage(const Layout& iLayout) const;
  bool CheckTextPlaces(const Layout& iLayout) const;
  void CheckEntries(const FTFontTable_name& iTable, const Layout& iLayout) const;
  void CheckCodes(uint32_t iIndex, const FTNameTableEntry& iEntry, const Layout& iLayout) const;
  void CheckOrder(uint32_t iIndex, const Codes& iCodes, Walk& ioWalk) const;
  void CheckRepetition(uint32_t iIndex, const Codes& iCodes, std::span<const FTNameTableEntry> iEntries,
                       Walk& ioWalk) const;
  void CheckNameCode(uint32_t iIndex, const FTNameTableEntry& iEntry) const;
  void CheckText(uint32_t iIndex, const FTNameTableEntry& iEntry) const;
  void CheckCharacters(uint32_t iIndex, uint32_t iNameCode, std::u32string_view iText) const;
};

inline constexpr VornFontTestEntry TestStructure_name = RunTester<VornFontTesterStructure_name>;
