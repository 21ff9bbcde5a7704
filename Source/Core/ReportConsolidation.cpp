#include "Core/ReportConsolidation.h"

#include <VornFontTest/VornFontTest.h>

#include <vector>

#include "Core/TestCatalogue.h"

namespace {

/// The font's PostScript name; null when it has none, for which a text stands in its dictionary.
TovaStringRef PostScriptNameOf(TovaDictionaryRef iFont) {
  const TovaStringRef tName = Tova::AsString(TovaDictionaryGetValue(iFont, kVornFontTestFontPostScriptNameKey));
  return TovaEqual(tName, LocalizedVersionOfString(kNoFontName).get()) ? nullptr : tName;
}

TovaArrayRef ArrayOf(TovaDictionaryRef iFont, TovaStringRef iKey) {
  return Tova::AsArray(TovaDictionaryGetValue(iFont, iKey));
}

/// The TrueType font's dictionary with the records and results of another of the same name added.
Tova::Dictionary Folded(TovaDictionaryRef iTrueType, TovaDictionaryRef iOther) {
  const auto tFolded = Tova::Adopt(TovaDictionaryCreateMutableCopy(iTrueType));
  if (const TovaArrayRef tRecords = ArrayOf(iOther, kVornFontTestArrayKey)) {
    const auto tAll = Tova::Adopt(TovaArrayCreateMutable());
    TovaArrayAppendArray(tAll.get(), ArrayOf(iTrueType, kVornFontTestArrayKey));
    TovaArrayAppendArray(tAll.get(), tRecords);
    TovaDictionarySetValue(tFolded.get(), kVornFontTestArrayKey, tAll.get());
  }
  if (const TovaArrayRef tResults = ArrayOf(iOther, kVornFontTestResultKey)) {
    const auto tAll = Tova::Adopt(TovaArrayCreateMutable());
    TovaArrayAppendArray(tAll.get(), ArrayOf(iTrueType, kVornFontTestResultKey));
    MergeSeverities(tAll.get(), tResults);
    TovaDictionarySetValue(tFolded.get(), kVornFontTestResultKey, tAll.get());
  }
  return tFolded;
}

}  // namespace

void ConsolidateReport(TovaMutableDictionaryRef ioReport) {
  const TovaArrayRef tFonts = ArrayOf(ioReport, kVornFontTestFontsTestedKey);
  const auto tTrueType = Tova::Adopt(TovaDictionaryCreateMutable());  // PostScript name -> dictionary
  std::vector<TovaDictionaryRef> tRest;
  for (TovaIndex i = 0; i < TovaArrayGetCount(tFonts); ++i) {
    const TovaDictionaryRef tFont = Tova::AsDictionary(TovaArrayGetValueAtIndex(tFonts, i));
    const TovaTypeRef tType = TovaDictionaryGetValue(tFont, kVornFontTestFontTypeKey);
    if (TovaEqual(tType, kVornFontTestTrueTypeFontData) && PostScriptNameOf(tFont)) {
      TovaDictionarySetValue(tTrueType.get(), PostScriptNameOf(tFont), tFont);
    } else {
      tRest.push_back(tFont);
    }
  }

  const auto tKept = Tova::Adopt(TovaArrayCreateMutable());
  for (const TovaDictionaryRef tFont : tRest) {
    const TovaStringRef tName = PostScriptNameOf(tFont);
    const TovaDictionaryRef tSame = Tova::AsDictionary(TovaDictionaryGetValue(tTrueType.get(), tName));
    if (tSame) {
      TovaDictionarySetValue(tTrueType.get(), tName, Folded(tSame, tFont).get());
    } else {
      TovaArrayAppendValue(tKept.get(), tFont);
    }
  }
  const bool tFoldedAny = TovaArrayGetCount(tKept.get()) < static_cast<TovaIndex>(tRest.size());
  if (!tFoldedAny) return;

  const auto tConsolidated = Tova::Adopt(TovaArrayCreateMutable());
  for (TovaIndex i = 0; i < TovaDictionaryGetCount(tTrueType.get()); ++i) {
    TovaArrayAppendValue(tConsolidated.get(), TovaDictionaryGetValueAtIndex(tTrueType.get(), i));
  }
  TovaArrayAppendArray(tConsolidated.get(), tKept.get());
  TovaDictionarySetValue(ioReport, kVornFontTestFontsTestedKey, tConsolidated.get());
}

void MergeSeverities(TovaMutableArrayRef ioTarget, TovaArrayRef iSeverities) {
  for (TovaIndex i = 0; i < TovaArrayGetCount(iSeverities); ++i) {
    const TovaTypeRef tSeverity = TovaArrayGetValueAtIndex(iSeverities, i);
    if (!TovaArrayContainsValue(ioTarget, tSeverity)) TovaArrayAppendValue(ioTarget, tSeverity);
  }
}
