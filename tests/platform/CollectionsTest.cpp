#include <gtest/gtest.h>

#include <thread>

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
               {Real(1e300), Real(1e300), true},
               {Integer(INT64_MAX), Real(9223372036854775808.0), false},
               {Integer(1), Tova::Share(kTovaBooleanTrue), false},
               {Tova::MakeString("a"), Tova::MakeString("a"), true},
               {Tova::MakeString(std::string_view("a\0b", 3)), Tova::MakeString("a"), false}};
  for (const auto& c : cases) {
    EXPECT_EQ(TovaEqual(c.first.get(), c.second.get()), c.equal) << Description(c.first.get());
    if (c.equal) {
      EXPECT_EQ(TovaHash(c.first.get()), TovaHash(c.second.get()));
    }
  }
  EXPECT_EQ(TovaNumberGetInteger(Tova::AsNumber(Real(-1e300).get())), INT64_MIN);
  EXPECT_EQ(TovaNumberGetInteger(Tova::AsNumber(Real(-2.9).get())), -2);
}

TEST(Values, ImmortalOnesAreNotCountedAndNullIsAcceptedEverywhere) {
  for (int i = 0; i < 3; ++i) TovaRelease(kTovaBooleanFalse);
  EXPECT_EQ(TovaGetRetainCount(kTovaBooleanFalse), TovaGetRetainCount(kTovaBooleanTrue));
  TovaRelease(TovaRetain(nullptr));
  EXPECT_EQ(TovaGetTypeID(nullptr), kTovaTypeNone);
  EXPECT_FALSE(TovaEqual(nullptr, nullptr));
  EXPECT_EQ(TovaCopyDescription(nullptr), nullptr);
  EXPECT_EQ(TovaDictionaryGetValue(nullptr, nullptr), TovaArrayGetValueAtIndex(nullptr, 0));
  EXPECT_EQ(TovaArrayCreateCopy(nullptr), nullptr);
  EXPECT_EQ(TovaStringGetUTF8Length(nullptr), 0U);
}

TEST(Values, ReferencesAreCountedAcrossThreads) {
  const auto copy = Tova::Adopt(TovaArrayCreateCopy(Array({Tova::MakeString("shared").get()}).get()));
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([copy] {
      for (int turn = 0; turn < 2000; ++turn) {
        const Tova::Array mine = copy;
        EXPECT_EQ(TovaHash(mine.get()), TovaHash(copy.get()));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(TovaGetRetainCount(copy.get()), 1);
}

TEST(Dates, PrintInUtcAndStayInFourDigitYears) {
  const struct {
    double time;
    const char* text;
  } cases[] = {{0, "1970-01-01T00:00:00Z"},           {1769851800.9, "2026-01-31T09:30:00Z"},
               {-0.5, "1969-12-31T23:59:59Z"},        {1709164800, "2024-02-29T00:00:00Z"},
               {-2082844800, "1904-01-01T00:00:00Z"}, {1e300, "9999-12-31T23:59:59Z"}};
  for (const auto& c : cases) {
    const auto date = Tova::Adopt(TovaDateCreate(c.time));
    EXPECT_EQ(Tova::Text(Tova::Adopt(TovaDateCopyISO8601(date.get()))), c.text);
  }
}

TEST(Array, ImmutableOnesDoNotChangeAndSelfAppendWorks) {
  const auto array = Array({Integer(0).get(), Integer(1).get(), Integer(2).get()});
  TovaArrayAppendValue(array.get(), nullptr);
  TovaArrayAppendArray(array.get(), array.get());
  EXPECT_EQ(Description(array.get()), "{0, 1, 2, 0, 1, 2}");
  EXPECT_TRUE(TovaArrayContainsValue(array.get(), Real(2).get()));

  const auto copy = Tova::Adopt(TovaArrayCreateCopy(array.get()));
  TovaArrayAppendValue(const_cast<TovaMutableArrayRef>(copy.get()), Integer(9).get());
  EXPECT_TRUE(TovaEqual(copy.get(), array.get()));
  EXPECT_EQ(Tova::Adopt(TovaArrayCreateCopy(copy.get())).get(), copy.get());
  EXPECT_EQ(TovaArrayGetValueAtIndex(copy.get(), 6), nullptr);
  EXPECT_EQ(TovaArrayGetValueAtIndex(copy.get(), -1), nullptr);
}

TEST(Dictionary, KeepsOrderThroughReplacementRemovalAndGrowth) {
  const auto key = [](int i) { return Tova::MakeString("key " + std::to_string(i)); };
  for (const int count : {5, 8, 9, 40}) {
    const auto dictionary = Tova::Adopt(TovaDictionaryCreateMutable());
    for (int i = 0; i < count; ++i) TovaDictionaryAddValue(dictionary.get(), key(i).get(), Integer(i).get());
    TovaDictionaryAddValue(dictionary.get(), key(1).get(), Integer(-1).get());
    TovaDictionarySetValue(dictionary.get(), key(2).get(), Integer(-2).get());
    TovaDictionarySetValue(dictionary.get(), key(3).get(), nullptr);
    TovaDictionaryRemoveValue(dictionary.get(), key(0).get());
    TovaDictionaryRemoveValue(dictionary.get(), key(count).get());
    ASSERT_EQ(TovaDictionaryGetCount(dictionary.get()), count - 1);
    EXPECT_EQ(TovaDictionaryGetValue(dictionary.get(), key(0).get()), nullptr);
    for (int i = 1; i < count; ++i) {
      const auto expected = Integer(i == 2 ? -2 : i);
      EXPECT_TRUE(TovaEqual(TovaDictionaryGetValue(dictionary.get(), key(i).get()), expected.get()));
      EXPECT_TRUE(TovaEqual(TovaDictionaryGetValueAtIndex(dictionary.get(), i - 1), expected.get()));
      EXPECT_EQ(Tova::Text(TovaDictionaryGetKeyAtIndex(dictionary.get(), i - 1)), Tova::Text(key(i)));
    }
  }
}

TEST(Dictionary, EqualityIgnoresTheOrderOfEntries) {
  const auto a = Tova::MakeString("a"), b = Tova::MakeString("b");
  const auto first = Dictionary({{a.get(), b.get()}, {b.get(), a.get()}});
  const auto second = Dictionary({{b.get(), a.get()}, {a.get(), b.get()}});
  EXPECT_TRUE(TovaEqual(first.get(), second.get()));
  EXPECT_EQ(TovaHash(first.get()), TovaHash(second.get()));
  const auto copy = Tova::Adopt(TovaDictionaryCreateCopy(first.get()));
  TovaDictionarySetValue(first.get(), a.get(), a.get());
  EXPECT_FALSE(TovaEqual(first.get(), second.get()));
  EXPECT_TRUE(TovaEqual(copy.get(), second.get()));
}

TEST(Collections, ADeepNestIsComparedDescribedAndReleased) {
  const auto nest = [] {
    Tova::Value value = Integer(1);
    for (int i = 0; i < 200000; ++i) {
      value = Array({Dictionary({{Tova::MakeString("k").get(), value.get()}}).get()});
    }
    return value;
  };
  const Tova::Value first = nest();
  const Tova::Value second = nest();
  EXPECT_TRUE(TovaEqual(first.get(), first.get()));
  EXPECT_FALSE(TovaEqual(first.get(), second.get()));
  EXPECT_EQ(TovaHash(first.get()), TovaHash(second.get()));
  EXPECT_NE(Description(first.get()).find("..."), std::string::npos);
  EXPECT_EQ(TovaPropertyListCreateXMLData(first.get()), nullptr);
}

}  // namespace
