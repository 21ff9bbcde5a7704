// Writes the parts of the library's bundle that follow from the list of tests, while the library is built:
//
//   write-bundle FOLDER
//
// FOLDER/OskelBuiltinTests.plist describes every test; FOLDER/en/TestNames.strings and en/TestDescriptions.strings hold
// their names and texts in English, for translators to set beside their own.

#include <VornFontTest/VornFontTest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "Core/LinkTable.h"

namespace {

/// The version of every test in its description: none has changed what it means since the first release.
constexpr int64_t kTestVersion = 1;

TovaStringRef ConstantOf(TestType iType) {
  switch (iType) {
    case TestType::kCore:
      return kVornFontTestCoreTest;
    case TestType::kStructure:
      return kVornFontTestStructureTest;
    case TestType::kConsistency:
      return kVornFontTestConsistencyTest;
    case TestType::kUsability:
      return kVornFontTestUsabilityTest;
    case TestType::kSpecification:
      return kVornFontTestSpecificationTest;
    case TestType::kUnexpectedValue:
      break;
  }
  return kVornFontTestUnexpectedValueTest;
}

Tova::Dictionary DescriptionOf(const TestIdentity& iTest) {
  const auto tTypes = Tova::Adopt(TovaArrayCreateMutable());
  for (const TestType tType : iTest.types.All()) TovaArrayAppendValue(tTypes.get(), ConstantOf(tType));
  auto tDescription = Tova::Adopt(TovaDictionaryCreateMutable());
  const auto tSet = [&](TovaStringRef iKey, TovaTypeRef iValue) {
    TovaDictionarySetValue(tDescription.get(), iKey, iValue);
  };
  tSet(kVornFontTestIdentifierKey, Tova::MakeString(iTest.identifier).get());
  tSet(kVornFontTestTypeKey, tTypes.get());
  if (iTest.target) {
    tSet(kVornFontTestTargetKey,
         Tova::MakeString(std::string("kVornFontTest_").append(iTest.target).append("Table")).get());
  }
  tSet(kVornFontTestVersionKey, Tova::Adopt(TovaNumberCreateWithInteger(kTestVersion)).get());
  return tDescription;
}

bool Write(const std::string& iPath, TovaTypeRef iPropertyList) {
  const auto tData = Tova::Adopt(TovaPropertyListCreateXMLData(iPropertyList));
  const std::unique_ptr<FILE, int (*)(FILE*)> tFile(std::fopen(iPath.c_str(), "wb"), std::fclose);
  const size_t tLength = TovaDataGetLength(tData.get());
  const bool tWritten = tFile && tLength > 0 &&
                        std::fwrite(TovaDataGetBytes(tData.get()), 1, tLength, tFile.get()) == tLength &&
                        std::fflush(tFile.get()) == 0;
  if (!tWritten) std::fprintf(stderr, "cannot write %s\n", iPath.c_str());
  return tWritten;
}

}  // namespace

int main(int iCount, char** iArguments) {
  if (iCount != 2) {
    std::fprintf(stderr, "usage: write-bundle FOLDER\n");
    return 2;
  }
  const std::string tFolder = iArguments[1];
  const auto tTests = Tova::Adopt(TovaArrayCreateMutable());
  const auto tNames = Tova::Adopt(TovaDictionaryCreateMutable());
  const auto tTexts = Tova::Adopt(TovaDictionaryCreateMutable());
  for (const VornFontTestLink& tLink : GetTestLinks()) {
    const Tova::String tIdentifier = Tova::MakeString(tLink.identifier);
    TovaArrayAppendValue(tTests.get(), DescriptionOf(*tLink.identity).get());
    TovaDictionarySetValue(tNames.get(), tIdentifier.get(), Tova::MakeString(tLink.identity->name).get());
    TovaDictionarySetValue(tTexts.get(), tIdentifier.get(), Tova::MakeString(tLink.identity->description).get());
  }
  return Write(tFolder + "/OskelBuiltinTests.plist", tTests.get()) &&
                 Write(tFolder + "/en/TestNames.strings", tNames.get()) &&
                 Write(tFolder + "/en/TestDescriptions.strings", tTexts.get())
             ? 0
             : 1;
}
