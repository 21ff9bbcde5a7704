#include "fuzz/Target.h"

#include <cstdio>
#include <cstdlib>

#include "support/AllTests.h"

namespace fuzz {

namespace {

Tova::MutableDictionary MakeOptions(Messages messages) {
  constexpr int kFewMessages = 50;
  SilenceLog();
  Tova::MutableDictionary options = test::AllTests(kVornFontTestReportTypeFull);
  TovaDictionarySetValue(options.get(), kVornFontTestMessageDetailsOptionKey, kTovaBooleanTrue);
  if (messages == Messages::kFew) {
    TovaDictionarySetValue(options.get(), kVornFontTestMessageLimitOptionKey,
                           Tova::Adopt(TovaNumberCreateWithInteger(kFewMessages)).get());
  }
  return options;
}

}  // namespace

void ReportOn(Input file, const char* name, Messages messages) {
  static const Tova::MutableDictionary gAll = MakeOptions(Messages::kAll);
  static const Tova::MutableDictionary gFew = MakeOptions(Messages::kFew);
  const Tova::MutableDictionary& options = messages == Messages::kAll ? gAll : gFew;
  const auto data = Tova::Adopt(TovaDataCreate(file.data(), file.size()));
  const auto url = Tova::Adopt(TovaURLCreateWithData(data.get(), name ? Tova::MakeString(name).get() : nullptr));
  const auto report = Tova::Adopt(VornFontTestCreateReport(url.get(), options.get()));
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
