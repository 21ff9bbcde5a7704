/*
 * VornFontTest: validates font files.
 *
 * A caller hands over the URL of a font file and, optionally, a dictionary of options; the library opens the file, runs
 * the requested tests over every font in it and returns a report: a tree of the dictionaries, arrays, strings, booleans
 * and dates of <Tova/Tova.h>.
 *
 * Every key and value constant is a string whose text equals its own name.
 *
 * Threads. Reports may be made on several threads at once. Errors. Nothing here throws; what goes wrong with a font,
 * its file included, becomes a fatal record inside the report. Fonts are mapped, not copied: a file that another
 * process cuts short while a report is made of it ends this one (SIGBUS), so test files that nobody writes to.
 */
#ifndef VORNFONTTEST_VORNFONTTEST_H
#define VORNFONTTEST_VORNFONTTEST_H

#include <Tova/Tova.h>

#if defined(__GNUC__)
#define VORNFONTTEST_EXPORT __attribute__((visibility("default")))
#else
#define VORNFONTTEST_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Functions ------------------------------------------------------------------------------------------------- */

/*
 * Tests every font of the file at url and returns the report, which the caller releases. options may be null; their
 * keys are listed below. The report holds, at its top:
 *
 *   kVornFontTestResultKey             array of severities: what all tests of all fonts found, each once, in order of
 *                                      first appearance; empty when nothing was found
 * and, in Summary and Full reports only:
 *   kVornFontTestFontsTestedKey        array with a dictionary for each font
 *   kVornFontTestUseSandboxOptionKey   boolean, kVornFontTestForceTestExecutionKey boolean and
 *   kVornFontTestCreateReportTypeKey   string: the options as they were used
 *
 * A font's dictionary: kVornFontTestFontNameKey, kVornFontTestFontPostScriptNameKey, kVornFontTestFontIdentifierKey
 * (strings), kVornFontTestFontTypeKey (a font type below), kVornFontTestResultKey (array of severities) and
 * kVornFontTestArrayKey: an array of test records. With kVornFontTestMessageDetailsOptionKey also, as far as the font
 * has them, kVornFontTestFontVersionKey (its version in words), kVornFontTestFontGlyphCountKey (number),
 * kVornFontTestFontOutlineKindKey (a kind of outlines below) and kVornFontTestFontTablesKey (array of the tags of its
 * tables, four characters each, in the order of the table directory; 256 at most).
 *
 * A test record: the keys of the test's description, kVornFontTestTimeStampKey (date), kVornFontTestResultKey (array
 * of severities) and, in Full reports, kVornFontTestMessagesKey: an array of dictionaries, each with
 * kVornFontTestResultKey (the severity) and kVornFontTestMessageTextKey (the text). With
 * kVornFontTestMessageDetailsOptionKey they also hold, as far as they are known, kVornFontTestMessageFormatKey (the
 * untranslated format of the text, which names the rule), kVornFontTestMessageTableKey (the four characters of a
 * table's tag), kVornFontTestMessageGlyphKey (a glyph index), kVornFontTestMessageGlyphNameKey (the name that the font
 * gives this glyph), kVornFontTestMessageCharacterKey (the lowest Unicode character that leads to it),
 * kVornFontTestMessageOffsetKey (bytes from the start of the table; all three numbers), kVornFontTestMessagePartKey (a
 * part of the table in words) and kVornFontTestMessageArgumentsKey (array of the numbers and strings that the format
 * was filled with). Where a font could not be tested, a record of its own says so; the dictionaries of its messages
 * carry the severity under kVornFontTestSeverityKey.
 *
 * The size of a report is bounded: some 32 megabytes and 64 bytes for each byte of the file, 512 megabytes at most, and
 * no more than five kilobytes for each message that kVornFontTestMessageLimitOptionKey allows, but 32 megabytes at
 * least. A quarter of it is kept for major and fatal findings. What is left out is said in the report.
 */
VORNFONTTEST_EXPORT TovaDictionaryRef VornFontTestCreateReport(TovaURLRef url, TovaDictionaryRef options);

/*
 * Lists the available tests that are of one of the given test types (strings), each once: an array of descriptions,
 * which the caller releases. With null instead of an array, the usability tests. Null when testTypes holds something
 * that is no string. A description is a dictionary of kVornFontTestIdentifierKey, kVornFontTestTypeKey (array of test
 * types), kVornFontTestTargetKey (a table key, for a test of one table), kVornFontTestVersionKey, kVornFontTestNameKey
 * and kVornFontTestDescriptionKey.
 */
VORNFONTTEST_EXPORT TovaArrayRef VornFontTestCopyAvailableTests(TovaArrayRef testTypes);

/* ---- Options --------------------------------------------------------------------------------------------------- */

/* Array of test descriptions: which tests to run, in this order. Default: the usability tests, of which the duplicate
   test waits up to ten seconds for a conduit where none runs. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestArrayKey;
/* Array of severities that tests are to look for; a test may skip checks of others. Default: fatal errors. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSeverityKey;
/* Boolean, default false: recorded in the report. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestUseSandboxOptionKey;
/* A report type. Default: results only. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestCreateReportTypeKey;
/* Boolean: whether to run tests without asking a cache of results first. There is no cache yet. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestForceTestExecutionKey;
/* Boolean, default false: the duplicate test ("veltrin.duplicates", a consistency test) does not ask whether another
   font of the same name is installed. It asks a service, see docs/conduit.md; without one, each question takes ten
   seconds. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSkipDuplicateFontTestOptionKey;
/* Boolean, default false: fonts and messages also say what they are about (see below). */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageDetailsOptionKey;
/* Number, default none: how many messages of one test over one font are kept. Further findings count in the result
   only, and a last message, of severity Information, says how many they were. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageLimitOptionKey;
/* Boolean, default false: texts of messages are made from the formats as they are, not from translations in the
   application's bundle. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestUntranslatedOptionKey;

/* ---- Report types ---------------------------------------------------------------------------------------------- */

/* The severities alone. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestReportTypeResultsOnly;
/* Also a dictionary for each font and a record for each test. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestReportTypeSummary;
/* Also the messages. */
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestReportTypeFull;

/* ---- Keys of reports ------------------------------------------------------------------------------------------- */

VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestResultKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFontsTestedKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFontNameKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFontPostScriptNameKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFontIdentifierKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFontTypeKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFontVersionKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFontGlyphCountKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFontOutlineKindKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFontTablesKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestTimeStampKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessagesKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageTextKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageFormatKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageTableKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageGlyphKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageGlyphNameKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageOffsetKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessagePartKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageCharacterKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestMessageArgumentsKey;

/* ---- Keys of test descriptions --------------------------------------------------------------------------------- */

VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestIdentifierKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestTypeKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestTargetKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestVersionKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestNameKey;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestDescriptionKey;

/* ---- Severities, from the mildest to the gravest --------------------------------------------------------------- */

VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSeverityNonFontError;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSeverityInformation;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSeverityTechnicalError;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSeverityMinorError;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSeverityMajorError;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSeverityFatalError;

/* ---- Test types ------------------------------------------------------------------------------------------------ */

VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestCoreTest;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestStructureTest;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestConsistencyTest;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestUsabilityTest;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSpecificationTest;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestUnexpectedValueTest;

/* ---- Font types ------------------------------------------------------------------------------------------------ */

VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestFONDResource;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestNFNTResource;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestTrueTypeFontData;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestPostScriptFontData;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestSplicedFontData;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestGeneralFontData;

/* ---- Kinds of outlines ----------------------------------------------------------------------------------------- */

VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestTrueTypeOutlines;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestPostScriptOutlines;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestType1Outlines;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTestBitmapsOnly;

/* ---- Test targets: sfnt tables (a blank or a slash of the tag is written as an underscore) --------------------- */

VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_acntTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_avarTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_BASETable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_bdatTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_bhedTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_blocTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_bslnTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_CFF_Table;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_cmapTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_cvarTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_cvt_Table;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_DSIGTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_EBDTTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_EBLCTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_EBSCTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_fdscTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_featTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_fmtxTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_fpgmTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_fvarTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_gaspTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_GDEFTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_glyfTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_GPOSTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_GSUBTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_hdmxTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_headTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_hheaTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_hmtxTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_hstyTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_JSTFTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_justTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_kernTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_lcarTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_locaTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_LTSHTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_maxpTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_mortTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_morxTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_nameTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_opbdTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_OS_2Table;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_PCLTTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_postTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_prepTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_propTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_trakTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_VDMXTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_vheaTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_vmtxTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_VORGTable;
VORNFONTTEST_EXPORT extern const TovaStringRef kVornFontTest_ZapfTable;

#ifdef __cplusplus
}
#endif

#endif
