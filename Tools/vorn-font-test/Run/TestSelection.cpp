#include "Run/TestSelection.h"

#include <fnmatch.h>

#include <algorithm>
#include <map>
#include <string_view>

#include "Report/FontTables.h"

namespace tool {
namespace {

/// The test that asks about other fonts than the one at hand.
constexpr std::string_view kDuplicateTest = "veltrin.duplicates";

/// Test descriptions by identifier.
using Tests = std::map<std::string, TovaDictionaryRef, std::less<>>;

struct TestType {
  std::string_view word;
  TovaStringRef constant;
};

Tova::Array TypeConstants(const std::vector<std::string>& words) {
  const TestType types[] = {{"core", kVornFontTestCoreTest},
                            {"structure", kVornFontTestStructureTest},
                            {"consistency", kVornFontTestConsistencyTest},
                            {"usability", kVornFontTestUsabilityTest}};
  auto constants = Tova::Adopt(TovaArrayCreateMutable());
  bool all = words.empty();
  for (const std::string& word : words) {
    const auto* type = std::ranges::find(types, word, &TestType::word);
    if (type != std::end(types)) {
      TovaArrayAppendValue(constants.get(), type->constant);
    } else if (word == "all") {
      all = true;
    } else {
      throw UsageError("--type: '" + word + "' is none of core, structure, consistency, usability, all");
    }
  }
  if (all) {
    for (const TestType& type : types) TovaArrayAppendValue(constants.get(), type.constant);
  }
  return constants;
}

std::string_view IdentifierOf(TovaTypeRef test) {
  return Tova::Text(Tova::AsString(TovaDictionaryGetValue(Tova::AsDictionary(test), kVornFontTestIdentifierKey)));
}

Tests ByIdentifier(TovaArrayRef descriptions) {
  Tests tests;
  for (TovaIndex i = 0; i < TovaArrayGetCount(descriptions); ++i) {
    TovaDictionaryRef test = Tova::AsDictionary(TovaArrayGetValueAtIndex(descriptions, i));
    tests.emplace(IdentifierOf(test), test);
  }
  return tests;
}

Tova::Array CopyTests(const std::vector<std::string>& types) {
  auto tests = Tova::Adopt(VornFontTestCopyAvailableTests(TypeConstants(types).get()));
  if (!tests) throw std::runtime_error("the library does not list its tests");
  return tests;
}

/// Whether the pattern is a glob for the identifier, or the tag of a table that the test examines.
bool Matches(const std::string& pattern, const Tests::value_type& test) {
  const auto target = Tova::Text(Tova::AsString(TovaDictionaryGetValue(test.second, kVornFontTestTargetKey)));
  return fnmatch(pattern.c_str(), test.first.c_str(), 0) == 0 || Examines(test.first, target, pattern);
}

bool MatchesAny(const std::string& pattern, const Tests& tests) {
  return std::ranges::any_of(tests, [&](const auto& test) { return Matches(pattern, test); });
}

}  // namespace

Tova::Array SelectTests(const Options& options) {
  const Tova::Array everything = CopyTests({});
  const Tests all = ByIdentifier(everything.get());
  if (all.empty()) throw std::runtime_error("the library's list of tests is missing; is the installation complete?");
  for (const std::string& pattern : options.excludes) {
    if (!MatchesAny(pattern, all)) throw UsageError("--exclude: no test matches '" + pattern + "'");
  }

  const Tova::Array ofTypes = options.types.empty() ? everything : CopyTests(options.types);
  Tests remaining = ByIdentifier(ofTypes.get());
  for (const std::string& pattern : options.tests) {
    if (MatchesAny(pattern, remaining)) continue;
    const char* what = MatchesAny(pattern, all) ? "no test of the wanted types matches '" : "no test matches '";
    throw UsageError("--test: " + (what + pattern) + "'; --list-tests lists them");
  }
  if (!options.duplicates) {
    if (std::ranges::find(options.tests, kDuplicateTest) != options.tests.end()) {
      throw UsageError("--test: '" + std::string(kDuplicateTest) + "' runs with --duplicates only");
    }
    remaining.erase(std::string(kDuplicateTest));
  }
  std::erase_if(remaining, [&](const auto& test) {
    return std::ranges::any_of(options.excludes, [&](const auto& pattern) { return Matches(pattern, test); });
  });

  auto selected = Tova::Adopt(TovaArrayCreateMutable());
  for (const std::string& pattern : options.tests.empty() ? std::vector<std::string>{"*"} : options.tests) {
    std::erase_if(remaining, [&](const auto& test) {
      if (!Matches(pattern, test)) return false;
      TovaArrayAppendValue(selected.get(), test.second);
      return true;
    });
  }
  if (TovaArrayGetCount(selected.get()) == 0) throw UsageError("no tests remain to be run");
  return selected;
}

bool AskAboutDuplicates(TovaArrayRef tests) {
  for (TovaIndex i = 0; i < TovaArrayGetCount(tests); ++i) {
    if (IdentifierOf(TovaArrayGetValueAtIndex(tests, i)) == kDuplicateTest) return true;
  }
  return false;
}

}  // namespace tool
