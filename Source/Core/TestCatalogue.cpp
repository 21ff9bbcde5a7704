#include "Core/TestCatalogue.h"

#include <VornFontTest/VornFontTest.h>

#include <cstdio>
#include <memory>

#include "TableAccess/AncillaryClasses/FTException.h"

namespace {

/// A property list of the library's bundle; none when there is none or it cannot be read.
Tova::Value ReadResource(const char* iName) {
  const Tova::Url tURL = Tova::Adopt(
      TovaBundleCopyResourceURL(GetBundle(), Tova::MakeString(iName).get(), Tova::MakeString("plist").get()));
  const char* tPath = TovaURLGetFileSystemPath(tURL.get());
  if (!tPath) return {};
  const std::unique_ptr<FILE, int (*)(FILE*)> tStream(std::fopen(tPath, "rbe"), std::fclose);
  if (!tStream) return {};
  return Tova::Adopt(TovaPropertyListCreateWithStream(tStream.get(), nullptr));
}

Tova::String LocalizedText(TovaStringRef iKey, const char* iTable) {
  return Tova::Adopt(TovaBundleCopyLocalizedString(GetBundle(), iKey, iKey, Tova::MakeString(iTable).get()));
}

/// Every test description of the library.
TovaArrayRef GetFullTestList() {
  static const Tova::Array gFullTestList = [] {
    const Tova::Value tList = ReadResource("OskelBuiltinTests");
    const TovaArrayRef tTests = Tova::AsArray(tList.get());
    return tTests ? Tova::Share(tTests) : Tova::Array(Tova::Adopt(TovaArrayCreateMutable()));
  }();
  return gFullTestList.get();
}

/// The description as callers get it: with its name and its text in the user's language.
Tova::Dictionary DescriptionForCallers(TovaDictionaryRef iDescription, TovaStringRef iIdentifier) {
  auto tCopy = Tova::Adopt(TovaDictionaryCreateMutableCopy(iDescription));
  TovaDictionarySetValue(tCopy.get(), kVornFontTestDescriptionKey,
                         LocalizedText(iIdentifier, "TestDescriptions").get());
  TovaDictionarySetValue(tCopy.get(), kVornFontTestNameKey, LocalizedText(iIdentifier, "TestNames").get());
  return tCopy;
}

/// Appends the descriptions of one type whose identifiers are not in ioTaken yet.
void AppendTestsOfType(TovaStringRef iType, TovaMutableArrayRef ioTests, TovaMutableArrayRef ioTaken) {
  const TovaArrayRef tAll = GetFullTestList();
  for (TovaIndex i = 0; i < TovaArrayGetCount(tAll); ++i) {
    const TovaDictionaryRef tDescription = Tova::AsDictionary(TovaArrayGetValueAtIndex(tAll, i));
    const TovaArrayRef tTypes = Tova::AsArray(TovaDictionaryGetValue(tDescription, kVornFontTestTypeKey));
    const TovaStringRef tIdentifier = Tova::AsString(TovaDictionaryGetValue(tDescription, kVornFontTestIdentifierKey));
    if (!tIdentifier || !TovaArrayContainsValue(tTypes, iType) || TovaArrayContainsValue(ioTaken, tIdentifier)) {
      continue;
    }
    TovaArrayAppendValue(ioTaken, tIdentifier);
    TovaArrayAppendValue(ioTests, DescriptionForCallers(tDescription, tIdentifier).get());
  }
}

}  // namespace

Tova::Array CopyAvailableTests(TovaArrayRef iTestTypes) {
  if (TovaGetTypeID(iTestTypes) != kTovaTypeArray) return {};
  const auto tTests = Tova::Adopt(TovaArrayCreateMutable());
  const auto tTaken = Tova::Adopt(TovaArrayCreateMutable());
  for (TovaIndex i = 0; i < TovaArrayGetCount(iTestTypes); ++i) {
    const TovaStringRef tType = Tova::AsString(TovaArrayGetValueAtIndex(iTestTypes, i));
    if (!tType) return {};
    AppendTestsOfType(tType, tTests.get(), tTaken.get());
  }
  return tTests;
}

Tova::Array GenerateDummyTestResults(TovaStringRef iMessage) {
  const Tova::Value tProperties = ReadResource("OskelAlwaysRunTest");
  const TovaDictionaryRef tAlwaysRun = Tova::AsDictionary(tProperties.get());
  const auto tRecord =
      Tova::Adopt(tAlwaysRun ? TovaDictionaryCreateMutableCopy(tAlwaysRun) : TovaDictionaryCreateMutable());

  TovaDictionaryAddValue(tRecord.get(), kVornFontTestResultKey,
                         Tova::MakeArray({kVornFontTestSeverityFatalError}).get());
  if (iMessage) {
    // quirk: fatal-record-severity. The severity key, where the messages of tests have the result key: readers of
    // reports know both.
    const auto tMessage = Tova::Adopt(TovaDictionaryCreateMutable());
    TovaDictionarySetValue(tMessage.get(), kVornFontTestSeverityKey, kVornFontTestSeverityFatalError);
    TovaDictionarySetValue(tMessage.get(), kVornFontTestMessageTextKey, iMessage);
    TovaDictionarySetValue(tRecord.get(), kVornFontTestMessagesKey, Tova::MakeArray({tMessage.get()}).get());
  }
  return Tova::MakeArray({tRecord.get()});
}

Tova::String LocalizedVersionOfString(const char* iText) {
  return LocalizedText(Tova::MakeString(iText).get(), "Localizable");
}
