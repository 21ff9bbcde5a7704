#pragma once

/// Error codes of FTException. Each code's name is also the key of its text in the string table "VornFTMessages" of the
/// library's bundle. Consecutive from 0.
#define FT_ERROR_CODES(CODE)                             \
  CODE(kVornFTParamErr)                                  \
  CODE(kVornFTMemoryAllocationErr)                       \
  CODE(kVornFTNoCMAPTableErr)                            \
  CODE(kVornFTBadCMAPTableErr)                           \
  CODE(kVornFTCMAPSubtableOffsetTooBigErr)               \
  CODE(kVornFTCMAPSubtableExtendsTooFarErr)              \
  CODE(kVornFTCMAPBadEncodingFormatErr)                  \
  CODE(kVornFTCMAPNoUnicodeEncodingErr)                  \
  CODE(kVornFTCannotConvertNameErr)                      \
  CODE(kVornFTFileIOErr)                                 \
  CODE(kVornFTInvalidFileTypeErr)                        \
  CODE(kVornFTArrayRangeErr)                             \
  CODE(kVornFTFontIsReadOnlyErr)                         \
  CODE(kVornFTNoPOSTTableErr)                            \
  CODE(kVornFTInvalidPOSTFormatErr)                      \
  CODE(kVornFTPOSTTooShortErr)                           \
  CODE(kVornFTBadPOST1TableErr)                          \
  CODE(kVornFTBadPOSTGlyphCountErr)                      \
  CODE(kVornFTGlyphIDOutOfRangeErr)                      \
  CODE(kVornFTBadPOST25TableErr)                         \
  CODE(kVornFTNAMETableBadFormatErr)                     \
  CODE(kVornFTNAMETableStringOffsetTooBigErr)            \
  CODE(kVornFTNAMETableStringOffsetTooSmallErr)          \
  CODE(kVornFTNameOffsetTooLargeErr)                     \
  CODE(kVornFTNameExtendsBeyondTableErr)                 \
  CODE(kVornFTBadNameRecordDataErr)                      \
  CODE(kVornFTInvalidPostScriptNameErr)                  \
  CODE(kVornFTLocalizedPostScriptNameErr)                \
  CODE(kVornFTRequiredNameMissingErr)                    \
  CODE(kVornFTPOSTMoreNameIndiciesThanNamesErr)          \
  CODE(kVornFTInconsistentUnicodeMappingsErr)            \
  CODE(kVornFTUnimplementedFunctionErr)                  \
  CODE(kVornFTNoHMTXTableErr)                            \
  CODE(kVornFTHMTXTableTooSmallErr)                      \
  CODE(kVornFTHMTXTableTooManyLongMetricsErr)            \
  CODE(kVornFTHEADTableMissing)                          \
  CODE(kVornFTLOCATableTooSmallErr)                      \
  CODE(kVornFTNoLOCATableErr)                            \
  CODE(kVornFTNoGLYFTableErr)                            \
  CODE(kVornFTLOCADataExceedsGLYFBoundsErr)              \
  CODE(kVornFTNoMAXPTableErr)                            \
  CODE(kVornFTNoNAMETableErr)                            \
  CODE(kVornFTNoHHEATableErr)                            \
  CODE(kVornFTNoBHEDTableErr)                            \
  CODE(kVornFTUnrecognizedSFNTFontErr)                   \
  CODE(kVornFTInconsistentSFNTTablesErr)                 \
  CODE(kVornFTInvalidDirectoryErr)                       \
  CODE(kVornFTInvalidTableOffsetErr)                     \
  CODE(kVornFTInvalidTableLengthErr)                     \
  CODE(kVornFTInvalidTooMuchDataErr)                     \
  CODE(kVornFTTableOverlapErr)                           \
  CODE(kVornFTNoOS_2TableErr)                            \
  CODE(kVornFTExtraneousOutlineDataErr)                  \
  CODE(kVornFTInconsistentOutlineDataErr)                \
  CODE(kVornFTTwoSetsOfOutlinesErr)                      \
  CODE(kVornFTTwoSetsOfBitmapsErr)                       \
  CODE(kVornFTNoBDATTableErr)                            \
  CODE(kVornFTHintsButNoOutlinesErr)                     \
  CODE(kVornFTResourceErr)                               \
  CODE(kVornFTMemoryErr)                                 \
  CODE(kVornFVUnknownFontResourceType)                   \
  CODE(kVornFVFATHasTooManyEntriesErr)                   \
  CODE(kVornFVFONDBadStyleMappingTableOffsetErr)         \
  CODE(kVornFVFONDStyleMappingTableAndFATOverlapErr)     \
  CODE(kVornFVFONDBadKerningTableOffsetErr)              \
  CODE(kVornFVFONDKerningTableAndFATOverlapErr)          \
  CODE(kVornFVFONDBadWidthTableOffsetErr)                \
  CODE(kVornFVFONDWidthTableAndFATOverlapErr)            \
  CODE(kVornFVFONDStyleMappingTableTooShortErr)          \
  CODE(kVornFTFONDNamesExceedStyleMappingTableBoundsErr) \
  CODE(kVornFTFONDGlyphRemappingTableTooBigErr)          \
  CODE(kVornFVFONDBoundingBoxTableExceedsFONDLimitsErr)  \
  CODE(kVornFVFONDBadOffsetTableEntryErr)                \
  CODE(kVornFVFONDTooMuchKerningDataErr)                 \
  CODE(kVornFVFONDTooManyKerningPairsErr)                \
  CODE(kVornFTPOSTFormat25Warning)                       \
  CODE(kVornFTPOST20TooFewGlyphsErr)                     \
  CODE(kVornFVBadGlyph0NameErr)                          \
  CODE(kVornFVBadGlyph1NameErr)                          \
  CODE(kVornFVBadGlyphNameIndexErr)                      \
  CODE(kVornFVExtraNotdefGlyphErr)                       \
  CODE(kVornFVDuplicateGlyphNameIndexErr)                \
  CODE(kVornFVAllOffsetsZeroErr)                         \
  CODE(kVornFVGlyphNameIndexTooHighErr)                  \
  CODE(kVornFVBadGlyphIndexGapErr)                       \
  CODE(kVornFVNoIndex258GapErr)                          \
  CODE(kVornFVTooManyNamesErr)                           \
  CODE(kVornFVPost20TooMuchNameDataErr)                  \
  CODE(kVornFVTooFewNameDataWarning)                     \
  CODE(kVornFVTooFewNamesErr)                            \
  CODE(kVornFVDuplicateNamesErr)                         \
  CODE(kVornFVGlyphNameWithSpaceErr)                     \
  CODE(kVornFVGlyphNameNonAlphaNumericCharErr)           \
  CODE(kVornFVZeroLengthGlyphNameErr)                    \
  CODE(kVornFVBadGlyphData)                              \
  CODE(kVornFVHEADTooSmallErr)                           \
  CODE(kVornFVRecursiveGlyphDataErr)                     \
  CODE(kVornFVExcessiveGlyphDataErr)                     \
  CODE(kVornFTNoPostScriptNameErr)                       \
  CODE(kVornFTUnusableFontErr)                           \
  CODE(kVornFTFONDAndLWFNInSameFileErr)

/// -1 stands for a failure that explains itself by a detail text.
enum FTErrorCode : int {
#define FT_ERROR_CODE(name) name,
  FT_ERROR_CODES(FT_ERROR_CODE)
#undef FT_ERROR_CODE
      kVornFTErrorCodeCount
};
