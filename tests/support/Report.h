#pragma once

#include <VornFontTest/VornFontTest.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <variant>

#include "support/TemporaryFolder.h"
#include "support/Values.h"

namespace test {

/// The values of a report, each under a path of keys and indexes.
class Report {
 public:
  using Path = std::initializer_list<std::variant<TovaStringRef, int>>;

  explicit Report(TovaDictionaryRef report) : report_(Tova::Adopt(report)) {}
  TovaTypeRef At(Path path) const {
    TovaTypeRef value = report_.get();
    for (const auto& step : path) {
      value = step.index() == 0 ? TovaDictionaryGetValue(Tova::AsDictionary(value), std::get<0>(step))
                                : TovaArrayGetValueAtIndex(Tova::AsArray(value), std::get<1>(step));
    }
    return value;
  }
  std::string Text(Path path) const { return std::string(Tova::Text(Tova::AsString(At(path)))); }
  TovaIndex Count(Path path) const { return TovaArrayGetCount(Tova::AsArray(At(path))); }
  TovaIndex Keys() const { return TovaDictionaryGetCount(report_.get()); }

 private:
  Tova::Dictionary report_;
};

/// Makes reports on files that are written for them.
class ReportCreation : public testing::Test {
 protected:
  Report Create(const Bytes& bytes, TovaDictionaryRef options = nullptr, const std::string& name = "font.ttf") {
    return CreateAt(folder_.Write(name, bytes), options);
  }
  static Report CreateAt(const std::string& path, TovaDictionaryRef options) {
    return Report(VornFontTestCreateReport(FileUrl(path).get(), options));
  }

  /// Options of the usability tests but for the one that waits for a conduit.
  static Tova::MutableDictionary WithoutConduit(TovaStringRef type) {
    return Dictionary({{kVornFontTestCreateReportTypeKey, type},
                       {kVornFontTestSkipDuplicateFontTestOptionKey, kTovaBooleanTrue}});
  }

  TemporaryFolder folder_;
  Tova::MutableDictionary full_ = WithoutConduit(kVornFontTestReportTypeFull);
  Tova::MutableDictionary summary_ = WithoutConduit(kVornFontTestReportTypeSummary);
};

inline constexpr auto& kResult = kVornFontTestResultKey;
inline constexpr auto& kFonts = kVornFontTestFontsTestedKey;
inline constexpr auto& kRecords = kVornFontTestArrayKey;

}  // namespace test
