#include <gtest/gtest.h>

#include "support/Values.h"

namespace {

using namespace test;

Tova::Value Integer(int64_t value) { return Tova::Adopt<TovaTypeRef>(TovaNumberCreateWithInteger(value)); }
Tova::Value Real(double value) { return Tova::Adopt<TovaTypeRef>(TovaNumberCreateWithReal(value)); }

TEST(Values, EqualOnesHaveEqualHashesAcrossFormsOfANumber) {
  const struct {
    Tova::Value first, second;
    bool equal;
  } cases[] = {{Integer(3), Real(3), true},
               {Real(0.0), Real(-0.0), true},
               {Real(0.5), Integer(0), false},
               {Integer(INT64_MAX), Real(9223372036854775808.0), false},
               {Integer(1), Tova::Share(kTovaBooleanTrue), false},
               {Tova::MakeString(std::string_view("a\0b", 3)), Tova::MakeString("a"), false}};
  for (const auto& c : cases) {
    EXPECT_EQ(TovaEqual(c.first.get(), c.second.get()), c.equal) << Description(c.first.get());
    EXPECT_TRUE(!c.equal || TovaHash(c.first.get()) == TovaHash(c.second.get()));
  }
  EXPECT_EQ(TovaNumberGetInteger(Tova::AsNumber(Real(-1e300).get())), INT64_MIN);
}

TEST(Values, DatesPrintInUtcAndStayInFourDigitYears) {
  for (const auto& [time, text] : {std::pair(1769851800.9, "2026-01-31T09:30:00Z"),
                                   {-0.5, "1969-12-31T23:59:59Z"},
                                   {1e300, "9999-12-31T23:59:59Z"}}) {
    EXPECT_EQ(Description(Tova::Adopt(TovaDateCreate(time)).get()), text);
  }
}

TEST(Dictionary, KeepsOrderThroughReplacementRemovalAndGrowth) {
  const auto key = [](int i) { return Tova::MakeString("key " + std::to_string(i)); };
  for (const int count : {5, 8, 9, 40}) {
    const auto dictionary = Tova::Adopt(TovaDictionaryCreateMutable());
    for (int i = 0; i < count; ++i) TovaDictionaryAddValue(dictionary.get(), key(i).get(), Integer(i).get());
    TovaDictionaryAddValue(dictionary.get(), key(1).get(), Integer(-1).get());
    TovaDictionarySetValue(dictionary.get(), key(2).get(), Integer(-2).get());
    TovaDictionaryRemoveValue(dictionary.get(), key(0).get());
    ASSERT_EQ(TovaDictionaryGetCount(dictionary.get()), count - 1);
    for (int i = 1; i < count; ++i) {
      const auto expected = Integer(i == 2 ? -2 : i);
      EXPECT_TRUE(TovaEqual(TovaDictionaryGetValue(dictionary.get(), key(i).get()), expected.get()));
      EXPECT_TRUE(TovaEqual(TovaDictionaryGetValueAtIndex(dictionary.get(), i - 1), expected.get()));
    }
  }
  const auto a = Tova::MakeString("a"), b = Tova::MakeString("b");
  const auto first = Dictionary({{a.get(), b.get()}, {b.get(), a.get()}});
  const auto second = Dictionary({{b.get(), a.get()}, {a.get(), b.get()}});
  EXPECT_TRUE(TovaEqual(first.get(), second.get()) && TovaHash(first.get()) == TovaHash(second.get()));
}

TEST(Collections, ADeepNestIsComparedDescribedAndReleased) {
  const auto nest = [] {
    Tova::Value value = Integer(1);
    for (int i = 0; i < 200000; ++i) {
      value = Array({Dictionary({{Tova::MakeString("k").get(), value.get()}}).get()});
    }
    return value;
  };
  const Tova::Value first = nest(), second = nest();
  EXPECT_FALSE(TovaEqual(first.get(), second.get()));
  EXPECT_EQ(TovaHash(first.get()), TovaHash(second.get()));
  EXPECT_NE(Description(first.get()).find("..."), std::string::npos);
  EXPECT_EQ(TovaPropertyListCreateXMLData(first.get()), nullptr);
}

}  // namespace
