#pragma once

#include <VornFontTest/VornFontTest.h>

#include "support/Values.h"

namespace test {

/// Options of a report by every test that needs no other fonts, with every severity enabled.
inline Tova::MutableDictionary AllTests(TovaStringRef reportType = kVornFontTestReportTypeSummary) {
  const auto types = Array({kVornFontTestCoreTest, kVornFontTestStructureTest, kVornFontTestConsistencyTest,
                            kVornFontTestUsabilityTest, kVornFontTestSpecificationTest});
  const auto severities =
      Array({kVornFontTestSeverityNonFontError, kVornFontTestSeverityInformation, kVornFontTestSeverityTechnicalError,
             kVornFontTestSeverityMinorError, kVornFontTestSeverityMajorError, kVornFontTestSeverityFatalError});
  return Dictionary({{kVornFontTestArrayKey, Tova::Adopt(VornFontTestCopyAvailableTests(types.get())).get()},
                     {kVornFontTestSeverityKey, severities.get()},
                     {kVornFontTestSkipDuplicateFontTestOptionKey, kTovaBooleanTrue},
                     {kVornFontTestCreateReportTypeKey, reportType}});
}

}  // namespace test
