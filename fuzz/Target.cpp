#include "fuzz/Target.h"

#include <cstdio>
#include <cstdlib>

#include "support/AllTests.h"

namespace fuzz {

void ReportOn(Input file, const char* name) {
  static const Tova::MutableDictionary gOptions = [] {
    SilenceLog();
    Tova::MutableDictionary options = test::AllTests(kVornFontTestReportTypeFull);
    TovaDictionarySetValue(options.get(), kVornFontTestMessageDetailsOptionKey, kTovaBooleanTrue);
    return options;
  }();
  const auto data = Tova::Adopt(TovaDataCreate(file.data(), file.size()));
  const auto url = Tova::Adopt(TovaURLCreateWithData(data.get(), name ? Tova::MakeString(name).get() : nullptr));
  const auto report = Tova::Adopt(VornFontTestCreateReport(url.get(), gOptions.get()));
  Check(TovaGetTypeID(TovaDictionaryGetValue(report.get(), kVornFontTestResultKey)) == kTovaTypeArray,
        "every file has a report");
}

void Check(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "This does not hold: %s\n", property);
  std::abort();
}

void SilenceLog() {
  const auto ignore = [](TovaStringRef, void*) {};
  TovaLogSetSink(ignore, nullptr);
  TovaLogErrorSetSink(ignore, nullptr);
}

}  // namespace fuzz
