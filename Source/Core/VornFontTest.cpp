#include <VornFontTest/VornFontTest.h>

#include <Tova/Tova.hpp>

#include "Core/ReportCreation.h"
#include "Core/TestCatalogue.h"

namespace {

/// Runs an action at the exported boundary: no exception crosses it. Null when there was one.
template <class Action>
auto Guarded(Action iAction) noexcept -> decltype(iAction()) {
  try {
    return iAction();
  } catch (...) {
    return nullptr;
  }
}

TovaArrayRef GetUsabilityTypes() {
  static const Tova::Array gUsabilityTypes = Tova::MakeArray({kVornFontTestUsabilityTest});
  return gUsabilityTypes.get();
}

}  // namespace

TovaDictionaryRef VornFontTestCreateReport(TovaURLRef url, TovaDictionaryRef options) {
  return Guarded([&] { return CreateReport(url, options).Detach(); });
}

TovaArrayRef VornFontTestCopyAvailableTests(TovaArrayRef testTypes) {
  return Guarded([&] { return CopyAvailableTests(testTypes ? testTypes : GetUsabilityTypes()).Detach(); });
}
