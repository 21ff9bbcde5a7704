#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

/// The kinds of tests that callers can ask for.
enum class TestType : uint8_t { kCore, kStructure, kConsistency, kUsability, kSpecification, kUnexpectedValue };

/// What a test is to the outside: a tester states it beside its code, and the lists and string tables of the library's
/// bundle are written from it.
struct TestIdentity {
  /// The types of a test, one or two.
  class Types {
   public:
    constexpr Types(std::initializer_list<TestType> iTypes) {  // NOLINT(google-explicit-constructor)
      for (const TestType tType : iTypes) _fTypes.at(_fCount++) = tType;
    }
    constexpr std::span<const TestType> All() const { return std::span(_fTypes).first(_fCount); }

   private:
    std::array<TestType, 2> _fTypes{};
    uint8_t _fCount = 0;
  };

  std::string_view identifier;  ///< reverse-domain: "veltrin.TrueType.cmap.structure"
  Types types;                  ///< at least one
  const char* target =
      nullptr;  ///< the table it looks at, as in kVornFontTest_OS_2Table: "OS_2"; null for no single one
  const char* prefix = nullptr;  ///< what its messages begin with, and the string table of their formats; null for none
  const char* name = nullptr;    ///< for people, in English: "Character map structure"
  const char* description = nullptr;  ///< a sentence or two, in English
};
