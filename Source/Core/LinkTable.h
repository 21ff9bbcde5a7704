#pragma once

#include <span>
#include <string_view>

#include "Tests/VornFontTester.h"

/// A row of the one list of tests: identifier, entry function, and what the test is to the outside.
struct VornFontTestLink {
  std::string_view identifier;
  VornFontTestEntry entry;
  const TestIdentity* identity;
};

/// Compares an identifier with that of a row, by character codes: negative, 0 or positive.
constexpr int VornFontTestLinkComp(std::string_view iIdentifier, const VornFontTestLink& iRow) {
  return iIdentifier.compare(iRow.identifier);
}

/// Every test of the library, ascending by identifier. The lists of tests in the bundle are written from it.
std::span<const VornFontTestLink> GetTestLinks();

/// The row of a test, null when the identifier is of none.
const VornFontTestLink* FindTestLink(std::string_view iIdentifier);
