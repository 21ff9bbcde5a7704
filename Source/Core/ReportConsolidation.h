#pragma once

#include <Tova/Tova.hpp>

/// Folds the dictionaries of fonts that a container lists more than once, as TrueType data and under another kind, into
/// the TrueType one. Fonts are the same when their PostScript names are; fonts without one stay apart. Changes nothing
/// in a report without such fonts.
void ConsolidateReport(TovaMutableDictionaryRef ioReport);

/// Appends the severities that the target does not hold yet.
void MergeSeverities(TovaMutableArrayRef ioTarget, TovaArrayRef iSeverities);
