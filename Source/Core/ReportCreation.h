#pragma once

#include <Tova/Tova.hpp>

/// Makes the report that VornFontTestCreateReport returns. An FTException that the tests do not hold becomes a fatal
/// record in the report, and so does any other exception while a font is opened or tested.
Tova::Dictionary CreateReport(TovaURLRef iURL, TovaDictionaryRef iOptions);

/// The boolean under a key of the options, the default when there is none.
bool GetBoolOption(bool iDefault, TovaStringRef iKey, TovaDictionaryRef iOptions);

/// Appends the severities of each record's results that the target does not hold yet. Null records add nothing.
void MergeTestResults(TovaMutableArrayRef ioTarget, TovaArrayRef iRecords);
