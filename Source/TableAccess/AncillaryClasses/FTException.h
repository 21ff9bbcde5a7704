#pragma once

#include <Tova/Tova.hpp>
#include <array>
#include <cstdint>

#include "TableAccess/AncillaryClasses/FTErrorCodes.h"
#include "TableAccess/AncillaryClasses/FTFaults.h"

/// The one exception of the library: font data that cannot be used, or a broken precondition. Thrown by value, caught
/// by reference. Carries the failed condition as it stands at the throw site, a code, and where it was thrown; where a
/// detail text explains the failure to a user, the code is -1. Texts longer than their buffers are cut, so copying one
/// never fails.
class FTException {
 public:
  /// Code 0, line 0, empty texts.
  FTException() = default;
  /// The detailed message becomes "Error %d (%s) in file %s, line %d". A null file counts as empty.
  FTException(const char* iAssertion, int32_t iCode, const char* iFile, uint32_t iLine);
  /// The same followed by " (%s)" with the detail text.
  FTException(const char* iAssertion, int32_t iCode, const char* iDetail, const char* iFile, uint32_t iLine);
  /// A copy has no UI message until it is asked for one.
  FTException(const FTException& iOther);
  FTException& operator=(const FTException& iOther);
  virtual ~FTException() = default;

  const char* GetAssertion() const { return _fAssertion.data(); }
  int32_t GetErrorCode() const { return _fCode; }
  const char* GetFile() const { return _fFile.data(); }
  uint32_t GetLine() const { return _fLine; }
  /// The detailed message as a string; owned by the exception. The first call also prints the report.
  TovaStringRef GetUIMessageString() const;
  /// Says "FTException: " and the detailed message as a line in the log.
  void PrintReport() const;
  virtual const char* GetDetailedMessage() const { return _fDetailedMessage.data(); }

 private:
  std::array<char, 2048> _fAssertion = {};
  int32_t _fCode = 0;
  std::array<char, 1024> _fFile = {};
  uint32_t _fLine = 0;
  std::array<char, 2048> _fDetailedMessage = {};
  mutable Tova::String _fUIMessage;
};

/// A place in the source: as a default argument, that of the call. (Not std::source_location, which clang 14 lacks.)
struct FTSourcePlace {
  const char* file;
  uint32_t line;
  static constexpr FTSourcePlace Current(const char* iFile = __builtin_FILE(),
                                         uint32_t iLine = static_cast<uint32_t>(__builtin_LINE())) {
    return {iFile, iLine};
  }
};

/// Throws with code -1 and the place of the call; the file is named as in "TableAccess/FontClasses/FTFont_sfnt".
[[noreturn]] void FTThrow(const char* iAssertion, const char* iDetail, FTSourcePlace iPlace = FTSourcePlace::Current());
/// Throws a fault of FTFaults.h with code -1.
[[noreturn]] void FTThrow(const FTFault& iFault);

/// The text of a code in the user's language, from the string table "VornFTMessages"; the code's name without one. A
/// number outside the table gives an empty string.
Tova::String GetUIMessageString(int32_t iCode);

/// The library's own bundle, null when it cannot be found.
TovaBundleRef GetBundle();
