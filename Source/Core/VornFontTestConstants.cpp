#include <VornFontTest/VornFontTest.h>

#include <Tova/Tova.hpp>

// The text of every constant is its own name. They live as long as the library is loaded and are never released.
#define VORN_CONSTANT(name) const TovaStringRef name = TovaStringCreateWithCString(#name)

// Options.
VORN_CONSTANT(kVornFontTestArrayKey);
VORN_CONSTANT(kVornFontTestSeverityKey);
VORN_CONSTANT(kVornFontTestUseSandboxOptionKey);
VORN_CONSTANT(kVornFontTestCreateReportTypeKey);
VORN_CONSTANT(kVornFontTestForceTestExecutionKey);
VORN_CONSTANT(kVornFontTestSkipDuplicateFontTestOptionKey);
VORN_CONSTANT(kVornFontTestMessageDetailsOptionKey);
VORN_CONSTANT(kVornFontTestMessageLimitOptionKey);
VORN_CONSTANT(kVornFontTestUntranslatedOptionKey);

// Report types.
VORN_CONSTANT(kVornFontTestReportTypeResultsOnly);
VORN_CONSTANT(kVornFontTestReportTypeSummary);
VORN_CONSTANT(kVornFontTestReportTypeFull);

// Keys of reports.
VORN_CONSTANT(kVornFontTestResultKey);
VORN_CONSTANT(kVornFontTestFontsTestedKey);
VORN_CONSTANT(kVornFontTestFontNameKey);
VORN_CONSTANT(kVornFontTestFontPostScriptNameKey);
VORN_CONSTANT(kVornFontTestFontIdentifierKey);
VORN_CONSTANT(kVornFontTestFontTypeKey);
VORN_CONSTANT(kVornFontTestFontVersionKey);
VORN_CONSTANT(kVornFontTestFontGlyphCountKey);
VORN_CONSTANT(kVornFontTestFontOutlineKindKey);
VORN_CONSTANT(kVornFontTestFontTablesKey);
VORN_CONSTANT(kVornFontTestTimeStampKey);
VORN_CONSTANT(kVornFontTestMessagesKey);
VORN_CONSTANT(kVornFontTestMessageTextKey);
VORN_CONSTANT(kVornFontTestMessageFormatKey);
VORN_CONSTANT(kVornFontTestMessageTableKey);
VORN_CONSTANT(kVornFontTestMessageGlyphKey);
VORN_CONSTANT(kVornFontTestMessageGlyphNameKey);
VORN_CONSTANT(kVornFontTestMessageOffsetKey);
VORN_CONSTANT(kVornFontTestMessagePartKey);
VORN_CONSTANT(kVornFontTestMessageCharacterKey);
VORN_CONSTANT(kVornFontTestMessageArgumentsKey);

// Keys of test descriptions.
VORN_CONSTANT(kVornFontTestIdentifierKey);
VORN_CONSTANT(kVornFontTestTypeKey);
VORN_CONSTANT(kVornFontTestTargetKey);
VORN_CONSTANT(kVornFontTestVersionKey);
VORN_CONSTANT(kVornFontTestNameKey);
VORN_CONSTANT(kVornFontTestDescriptionKey);

// Severities, from the mildest to the gravest.
VORN_CONSTANT(kVornFontTestSeverityNonFontError);
VORN_CONSTANT(kVornFontTestSeverityInformation);
VORN_CONSTANT(kVornFontTestSeverityTechnicalError);
VORN_CONSTANT(kVornFontTestSeverityMinorError);
VORN_CONSTANT(kVornFontTestSeverityMajorError);
VORN_CONSTANT(kVornFontTestSeverityFatalError);

// Test types.
VORN_CONSTANT(kVornFontTestCoreTest);
VORN_CONSTANT(kVornFontTestStructureTest);
VORN_CONSTANT(kVornFontTestConsistencyTest);
VORN_CONSTANT(kVornFontTestUsabilityTest);
VORN_CONSTANT(kVornFontTestSpecificationTest);
VORN_CONSTANT(kVornFontTestUnexpectedValueTest);

// Font types.
VORN_CONSTANT(kVornFontTestFONDResource);
VORN_CONSTANT(kVornFontTestNFNTResource);
VORN_CONSTANT(kVornFontTestTrueTypeFontData);
VORN_CONSTANT(kVornFontTestPostScriptFontData);
VORN_CONSTANT(kVornFontTestSplicedFontData);
VORN_CONSTANT(kVornFontTestGeneralFontData);

// Kinds of outlines.
VORN_CONSTANT(kVornFontTestTrueTypeOutlines);
VORN_CONSTANT(kVornFontTestPostScriptOutlines);
VORN_CONSTANT(kVornFontTestType1Outlines);
VORN_CONSTANT(kVornFontTestBitmapsOnly);

// Test targets: sfnt tables (a blank or a slash of the tag is written as an underscore).
VORN_CONSTANT(kVornFontTest_acntTable);
VORN_CONSTANT(kVornFontTest_avarTable);
VORN_CONSTANT(kVornFontTest_BASETable);
VORN_CONSTANT(kVornFontTest_bdatTable);
VORN_CONSTANT(kVornFontTest_bhedTable);
VORN_CONSTANT(kVornFontTest_blocTable);
VORN_CONSTANT(kVornFontTest_bslnTable);
VORN_CONSTANT(kVornFontTest_CFF_Table);
VORN_CONSTANT(kVornFontTest_cmapTable);
VORN_CONSTANT(kVornFontTest_cvarTable);
VORN_CONSTANT(kVornFontTest_cvt_Table);
VORN_CONSTANT(kVornFontTest_DSIGTable);
VORN_CONSTANT(kVornFontTest_EBDTTable);
VORN_CONSTANT(kVornFontTest_EBLCTable);
VORN_CONSTANT(kVornFontTest_EBSCTable);
VORN_CONSTANT(kVornFontTest_fdscTable);
VORN_CONSTANT(kVornFontTest_featTable);
VORN_CONSTANT(kVornFontTest_fmtxTable);
VORN_CONSTANT(kVornFontTest_fpgmTable);
VORN_CONSTANT(kVornFontTest_fvarTable);
VORN_CONSTANT(kVornFontTest_gaspTable);
VORN_CONSTANT(kVornFontTest_GDEFTable);
VORN_CONSTANT(kVornFontTest_glyfTable);
VORN_CONSTANT(kVornFontTest_GPOSTable);
VORN_CONSTANT(kVornFontTest_GSUBTable);
VORN_CONSTANT(kVornFontTest_hdmxTable);
VORN_CONSTANT(kVornFontTest_headTable);
VORN_CONSTANT(kVornFontTest_hheaTable);
VORN_CONSTANT(kVornFontTest_hmtxTable);
VORN_CONSTANT(kVornFontTest_hstyTable);
VORN_CONSTANT(kVornFontTest_JSTFTable);
VORN_CONSTANT(kVornFontTest_justTable);
VORN_CONSTANT(kVornFontTest_kernTable);
VORN_CONSTANT(kVornFontTest_lcarTable);
VORN_CONSTANT(kVornFontTest_locaTable);
VORN_CONSTANT(kVornFontTest_LTSHTable);
VORN_CONSTANT(kVornFontTest_maxpTable);
VORN_CONSTANT(kVornFontTest_mortTable);
VORN_CONSTANT(kVornFontTest_morxTable);
VORN_CONSTANT(kVornFontTest_nameTable);
VORN_CONSTANT(kVornFontTest_opbdTable);
VORN_CONSTANT(kVornFontTest_OS_2Table);
VORN_CONSTANT(kVornFontTest_PCLTTable);
VORN_CONSTANT(kVornFontTest_postTable);
VORN_CONSTANT(kVornFontTest_prepTable);
VORN_CONSTANT(kVornFontTest_propTable);
VORN_CONSTANT(kVornFontTest_trakTable);
VORN_CONSTANT(kVornFontTest_VDMXTable);
VORN_CONSTANT(kVornFontTest_vheaTable);
VORN_CONSTANT(kVornFontTest_vmtxTable);
VORN_CONSTANT(kVornFontTest_VORGTable);
VORN_CONSTANT(kVornFontTest_ZapfTable);
