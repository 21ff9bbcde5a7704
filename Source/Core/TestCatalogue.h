#pragma once

#include <Tova/Tova.hpp>

// Which tests exist, as the library's bundle describes them, and the texts for when none could be run.

/// The descriptions of all tests that are of one of the types (an array of strings), each once, in the order of the
/// types and within one in that of the resource "OskelBuiltinTests". None when iTestTypes is no array or holds
/// something that is no string.
Tova::Array CopyAvailableTests(TovaArrayRef iTestTypes);

/// One test record for a font that could not be tested: the properties of the resource "OskelAlwaysRunTest", a fatal
/// result and, unless iMessage is null, the message.
Tova::Array GenerateDummyTestResults(TovaStringRef iMessage);

/// What stands in a report for a name that a font has not.
inline constexpr const char* kNoFontName = "<no font name>";

/// The text in the user's language, from the string table "Localizable"; the text itself without one.
Tova::String LocalizedVersionOfString(const char* iText);
