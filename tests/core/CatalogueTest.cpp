#include <VornFontTest/VornFontTest.h>

#include <algorithm>
#include <set>

#include "Core/LinkTable.h"
#include "Core/TestCatalogue.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;

const std::vector<TovaTypeRef> kAllTypes = {kVornFontTestCoreTest,          kVornFontTestStructureTest,
                                            kVornFontTestConsistencyTest,   kVornFontTestUsabilityTest,
                                            kVornFontTestSpecificationTest, kVornFontTestUnexpectedValueTest};

/// The identifiers of the tests of some types, in order; "(null)" without an answer.
std::vector<std::string> Identifiers(const Tova::Array& types) {
  const Tova::Array tests = Tova::Adopt(VornFontTestCopyAvailableTests(types.get()));
  if (!tests) return {"(null)"};
  std::vector<std::string> identifiers;
  for (TovaIndex i = 0; i < TovaArrayGetCount(tests.get()); ++i) {
    const TovaDictionaryRef test = Tova::AsDictionary(TovaArrayGetValueAtIndex(tests.get(), i));
    identifiers.emplace_back(Tova::Text(Tova::AsString(TovaDictionaryGetValue(test, kVornFontTestIdentifierKey))));
  }
  return identifiers;
}

TEST(Catalogue, DescribesExactlyTheLinkedTests) {
  std::set<std::string> linked;
  for (const VornFontTestLink& link : GetTestLinks()) linked.emplace(link.identifier);
  const std::vector<std::string> described = Identifiers(Array(kAllTypes));
  EXPECT_EQ(std::set<std::string>(described.begin(), described.end()), linked);
  EXPECT_EQ(described.size(), linked.size()) << "each once, whatever its types";
}

TEST(Catalogue, EveryTestHasANameAndAText) {
  const Tova::Array tests = Tova::Adopt(VornFontTestCopyAvailableTests(Array(kAllTypes).get()));
  for (TovaIndex i = 0; i < TovaArrayGetCount(tests.get()); ++i) {
    const TovaDictionaryRef test = Tova::AsDictionary(TovaArrayGetValueAtIndex(tests.get(), i));
    const TovaTypeRef identifier = TovaDictionaryGetValue(test, kVornFontTestIdentifierKey);
    for (const TovaStringRef key : {kVornFontTestNameKey, kVornFontTestDescriptionKey}) {
      EXPECT_FALSE(TovaEqual(TovaDictionaryGetValue(test, key), identifier)) << Tova::Text(Tova::AsString(identifier));
    }
    EXPECT_NE(TovaDictionaryGetValue(test, kVornFontTestVersionKey), nullptr);
  }
}

TEST(Catalogue, ListsByTypeInTheOrderOfTheTypes) {
  const auto usability = Identifiers(Array({kVornFontTestUsabilityTest}));
  EXPECT_EQ(Identifiers(Tova::Array()), usability) << "the usability tests without an answer to which";
  auto expected = Identifiers(Array({kVornFontTestCoreTest}));
  for (const std::string& identifier : usability) {
    if (std::ranges::find(expected, identifier) == expected.end()) expected.push_back(identifier);
  }
  EXPECT_EQ(Identifiers(Array({kVornFontTestCoreTest, kVornFontTestUsabilityTest})), expected);
  EXPECT_TRUE(Identifiers(Array({})).empty());
  EXPECT_TRUE(Identifiers(Array({kVornFontTestArrayKey})).empty()) << "no type of tests";
}

TEST(Catalogue, ATypeThatIsNoStringEndsTheQuery) {
  const Tova::Number number = Tova::Adopt(TovaNumberCreateWithInteger(1));
  EXPECT_EQ(Identifiers(Array({kVornFontTestUsabilityTest, number.get()})), std::vector<std::string>{"(null)"});
}

TEST(Catalogue, IdentifiersAreMatchedExactly) {
  EXPECT_NE(FindTestLink("veltrin.TrueType.usability"), nullptr);
  for (const char* other :
       {"", "veltrin.TrueType", "veltrin.TrueType.usability ", "veltrin.truetype.usability", "zzz"}) {
    EXPECT_EQ(FindTestLink(other), nullptr) << other;
  }
}

}  // namespace
