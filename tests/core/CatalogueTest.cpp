#include <VornFontTest/VornFontTest.h>
#include <gmock/gmock.h>

#include <algorithm>

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
  std::vector<std::string> identifiers(tests ? 0 : 1, "(null)");
  for (TovaIndex i = 0; i < TovaArrayGetCount(tests.get()); ++i) {
    const TovaDictionaryRef test = Tova::AsDictionary(TovaArrayGetValueAtIndex(tests.get(), i));
    const TovaTypeRef identifier = TovaDictionaryGetValue(test, kVornFontTestIdentifierKey);
    identifiers.emplace_back(Tova::Text(Tova::AsString(identifier)));
    for (const TovaStringRef key : {kVornFontTestNameKey, kVornFontTestDescriptionKey, kVornFontTestVersionKey}) {
      const TovaTypeRef text = TovaDictionaryGetValue(test, key);
      EXPECT_TRUE(text && !TovaEqual(text, identifier)) << identifiers.back();
    }
  }
  return identifiers;
}

TEST(Catalogue, DescribesExactlyTheLinkedTests) {
  std::vector<std::string> linked;
  for (const VornFontTestLink& link : GetTestLinks()) linked.emplace_back(link.identifier);
  EXPECT_THAT(Identifiers(Array(kAllTypes)), testing::UnorderedElementsAreArray(linked)) << "each once";
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
  const auto number = Tova::Adopt<TovaTypeRef>(TovaNumberCreateWithInteger(1));
  EXPECT_EQ(Identifiers(Array({kVornFontTestUsabilityTest, number.get()})), std::vector<std::string>{"(null)"});
}

TEST(Catalogue, IdentifiersAreMatchedExactly) {
  EXPECT_NE(FindTestLink("veltrin.duplicates"), nullptr);
  for (const char* other : {"", "veltrin.TrueType", "veltrin.duplicates ", "veltrin.Duplicates", "zzz"}) {
    EXPECT_EQ(FindTestLink(other), nullptr) << other;
  }
}

}  // namespace
