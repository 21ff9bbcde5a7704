#pragma once

#include <span>
#include <string_view>

#include "Tests/VornFontTester.h"

/// A row of the table that links test identifiers to entry functions.
struct VornFontTestLink {
  std::string_view identifier;
  VornFontTestEntry entry;
};

/// Compares an identifier with that of a row, by character codes: negative, 0 or positive.
constexpr int VornFontTestLinkComp(std::string_view iIdentifier, const VornFontTestLink& iRow) {
  return iIdentifier.compare(iRow.identifier);
}

/// Every test of the library, ascending by identifier.
std::span<const VornFontTestLink> GetTestLinks();

/// The row of a test, null when the identifier is of none.
const VornFontTestLink* FindTestLink(std::string_view iIdentifier);
