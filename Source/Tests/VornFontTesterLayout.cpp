#include "TableAccess/AncillaryClasses/FTLookupSearch.h"
#include "Tests/StateTableChecker.h"
#include "Tests/VornFontTester.h"

int64_t VornFontTester::FindSegment(Tova::ByteView iLookup, uint32_t iGlyph) {
  return FTLookupSearch::FindSegment(iLookup, iGlyph);
}

int64_t VornFontTester::FindSingle(Tova::ByteView iLookup, uint32_t iGlyph) {
  return FTLookupSearch::FindSingle(iLookup, iGlyph);
}

int64_t VornFontTester::DoGenericLookup(Tova::ByteView iLookup, uint32_t iGlyph) {
  return FTLookupSearch::FindValue(iLookup, iGlyph);
}

uint64_t VornFontTester::CalculateLookupTableSize(Tova::ByteView iLookup) const {
  const auto* tFont = dynamic_cast<const FTFont_sfnt*>(GetFont());
  return FTLookupSearch::CalculateSize(iLookup, tFont ? tFont->CountFontGlyphs() : 0);
}

std::optional<StateMachine> VornFontTester::TestSTXStateTable(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit,
                                                              StateMachineKind iKind) {
  return CheckStateTable(iTable, iAt, iLimit, iKind, StateTableWidth::kExtended);
}

std::optional<StateMachine> VornFontTester::TestStateTable(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit,
                                                           StateMachineKind iKind) {
  return CheckStateTable(iTable, iAt, iLimit, iKind, StateTableWidth::kClassic);
}
