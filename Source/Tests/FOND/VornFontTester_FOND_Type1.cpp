#include "Tests/FOND/VornFontTester_FOND_Type1.h"

#include <limits>

#include "TableAccess/ContainerClasses/FTLWFNFontContainer.h"
#include "TableAccess/FontClasses/FTFont_POST.h"

namespace {

/// Kinds of pieces, and the greatest of them.
enum : uint8_t { kText = 1, kDataForkData = 4, kEndOfFile = 5, kLastKind = 5 };

/// Where the data of a piece starts, behind its kind and a zero.
constexpr uint64_t kDataAt = 2;

/// The shortest first piece: its header, and the start of a font.
constexpr uint64_t kShortestFirstPiece = 19;

bool StartsFont(const FTFont_POST& iPiece) {
  const Tova::ByteView tBytes = iPiece.Bytes();
  return iPiece.GetDataType() == kText && tBytes.Size() >= kShortestFirstPiece &&
         (tBytes.Matches(kDataAt, "%!FontType1-") || tBytes.Matches(kDataAt, "%!PS-AdobeFont-1"));
}

/// White space of the POSIX locale.
bool IsSpace(uint8_t iByte) { return iByte == ' ' || (iByte >= '\t' && iByte <= '\r'); }

bool HasDataFork(const FTLWFNFontContainer& iOutlines) {
  const auto tFork = iOutlines.GetFile().Open(Tova::Fork::kData);
  return tFork && !tFork->Empty();
}

}  // namespace

void VornFontTester_FOND_Type1::CheckFamily(const FTFont_FOND& iFamily) const {
  for (uint64_t i = 0; i < iFamily.GetType1FontCount(); ++i) CheckType1(*iFamily.GetIndType1Font(i));
}

void VornFontTester_FOND_Type1::CheckType1(const FTLWFNFontContainer& iOutlines) const {
  const auto tType = iOutlines.GetFile().TypeCode();
  if (tType && *tType != FTTag("LWFN")) {
    ReportResult(Severity::kTechnicalError, "The PostScript data is not found in a file of type 'LWFN'");
  }
  bool tCanBeParsed = true;
  const FTFont_POST* tLast = nullptr;
  for (int tID = FTLWFNFontContainer::kFirstPOST; tID <= std::numeric_limits<int16_t>::max(); ++tID) {
    const FTFont_POST* tPiece = iOutlines.GetPOST(static_cast<int16_t>(tID));
    if (!tPiece) break;
    const At tHere(*this, {.table = FTTag("POST"), .part = "Resource " + std::to_string(tID)});
    tCanBeParsed = CheckPiece(iOutlines, *tPiece) && tCanBeParsed;
    tLast = tPiece;
  }
  if (!tLast) {
    ReportResult(Severity::kMajorError, "The PostScript data file contains no PostScript data.");
    return;
  }
  if (tLast->GetDataType() != kDataForkData && tLast->GetDataType() != kEndOfFile) {
    ReportResult(Severity::kTechnicalError,
                 "The PostScript data contains data after an end-of-data marker or datafork-data marker.");
  }
  if (tCanBeParsed && !LWFNParsesWithoutError(iOutlines.GetFile().Path())) {
    ReportResult(Severity::kFatalError, "An error occurred while parsing the font's PostScript data.");
  }
}

bool VornFontTester_FOND_Type1::CheckPiece(const FTLWFNFontContainer& iOutlines, const FTFont_POST& iPiece) const {
  const int tID = iPiece.GetResourceID();
  const uint8_t tKind = iPiece.GetDataType();
  bool tCanBeParsed = true;
  if (tKind > kLastKind) {
    ReportResult(Severity::kFatalError,
                 "POST resource %d starts with an illegal data type value (%d); valid values are 1 through 5.",
                 {tID, tKind});
    tCanBeParsed = false;
  }
  if (const uint8_t tSecond = iPiece.U8At(1); tSecond != 0) {
    ReportResult(Severity::kTechnicalError, "POST resource %d has an illegal second byte (%d); it should be zero.",
                 {tID, tSecond});
  }
  if (tID == FTLWFNFontContainer::kFirstPOST && !StartsFont(iPiece)) {
    ReportResult(Severity::kFatalError, "The PostScript font data does not begin with a valid header.");
    tCanBeParsed = false;
  }
  if (tKind == kText && !CheckText(iPiece)) tCanBeParsed = false;
  if (tKind == kDataForkData && !HasDataFork(iOutlines)) {
    ReportResult(Severity::kMajorError,
                 "POST resource %d indicates that there is font data in the data-fork, but there is none.", {tID});
    tCanBeParsed = false;
  }
  return tCanBeParsed;
}

bool VornFontTester_FOND_Type1::CheckText(const FTFont_POST& iPiece) const {
  const Tova::ByteView tBytes = iPiece.Bytes();
  GetFont()->SpendWork(tBytes.Size());
  bool tIsText = true;
  for (uint64_t i = kDataAt; i < tBytes.Size(); ++i) {
    const uint8_t tByte = tBytes.U8(i);
    if (tByte > ' ' || IsSpace(tByte)) continue;
    tIsText = false;
    const At tHere(*this, {.offset = i});
    ReportResult(Severity::kMajorError, "POST resource %d has a non-ASCII byte 0x%02X at position %d.",
                 {iPiece.GetResourceID(), tByte, i});
    if (CanBailOnFirstFailure()) break;
  }
  return tIsText;
}

bool VornFontTester_FOND_Type1::LWFNParsesWithoutError(const std::string&) { return true; }
