#include "Core/ReportTree.h"

#include <VornFontTest/VornFontTest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>

#include "Core/TestCatalogue.h"
#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable.h"

namespace {

/// About what the dictionaries of a font and of a test record take, and a glyph name in a message beside its text.
constexpr uint64_t kFontBytes = 2000;
constexpr uint64_t kRecordBytes = 700;
constexpr uint64_t kGlyphNameBytes = 100;

TovaStringRef ConstantOf(Severity iSeverity) {
  switch (iSeverity) {
    case Severity::kNonFontError:
      return kVornFontTestSeverityNonFontError;
    case Severity::kInformation:
      return kVornFontTestSeverityInformation;
    case Severity::kTechnicalError:
      return kVornFontTestSeverityTechnicalError;
    case Severity::kMinorError:
      return kVornFontTestSeverityMinorError;
    case Severity::kMajorError:
      return kVornFontTestSeverityMajorError;
    case Severity::kFatalError:
      break;
  }
  return kVornFontTestSeverityFatalError;
}

TovaStringRef FontTypeOf(const FTFont& iFont) {
  try {
    switch (iFont.GetType()) {
      case 1:
        return kVornFontTestFONDResource;
      case 2:
        return kVornFontTestNFNTResource;
      case 3:
        return kVornFontTestTrueTypeFontData;
      case 4:
        return kVornFontTestPostScriptFontData;
      case 5:
        return kVornFontTestSplicedFontData;
      default:
        return kVornFontTestGeneralFontData;
    }
  } catch (const FTException&) {
    return kVornFontTestGeneralFontData;
  }
}

uint64_t RoomFor(const ReportTree::Options& iOptions, uint64_t iFileBytes) {
  if (iOptions.bytes != 0) return iOptions.bytes;
  const FTLimits& tLimits = FTLimits::Get();
  const auto tRoomOf = [&](uint64_t iBytesEach, uint64_t iCount) {  // no product wraps
    return std::min(tLimits.maxReportBytes, iBytesEach * std::min(iCount, tLimits.maxReportBytes));
  };
  const uint64_t tRoom =
      std::min(tLimits.maxReportBytes, tLimits.minReportBytes + tRoomOf(tLimits.reportBytesPerByte, iFileBytes));
  if (iOptions.messageLimit == 0) return tRoom;
  const uint64_t tForMessages = tRoomOf(tLimits.reportBytesPerMessageAllowed, iOptions.messageLimit);
  return std::min(tRoom, std::max(tLimits.minReportBytes, tForMessages));
}

/// A prefix as part of a format.
std::string Escaped(std::string_view iPrefix) {
  std::string tEscaped;
  for (const char tCharacter : iPrefix) tEscaped.append(tCharacter == '%' ? 2 : 1, tCharacter);
  return tEscaped;
}

/// Of a text that begins with the part that it is about: the part and the rest are the arguments.
std::string NamedPartFormat(const Finding& iFinding) {
  return (iFinding.prefix ? Escaped(iFinding.prefix) + ": " : "") + "%s: %@";
}

}  // namespace

ReportTree::ReportTree(const Options& iOptions)
    : _fOptions(iOptions), _fRoomForLongNames(FTLimits::Get().longNameBytes) {
  SetFileSize(0);
}

void ReportTree::SetFileSize(uint64_t iBytes) {
  _fRoom = RoomFor(_fOptions, iBytes);
  _fBytesForGrave = _fRoom / 4;
}

Tova::MutableDictionary ReportTree::MakeFont(const FTFont& iFont) {
  auto tFont = Tova::Adopt(TovaDictionaryCreateMutable());
  if (!HasFonts()) return tFont;
  AddFontDataToDictionary(tFont.get(), iFont);
  for (const TovaStringRef tKey :
       {kVornFontTestFontNameKey, kVornFontTestFontPostScriptNameKey, kVornFontTestFontIdentifierKey}) {
    KeepName(tFont.get(), tKey);
  }
  _fCharacters.Reset();
  if (_fOptions.messageDetails) {
    Charge(AddFontDetails(tFont.get(), iFont));
    KeepName(tFont.get(), kVornFontTestFontVersionKey);
  }
  Charge(kFontBytes);
  return tFont;
}

/// Fonts of a collection may share a long name, which is then kept once; but whoever writes the report writes it for
/// each, so that long names have a bound of their own.
void ReportTree::KeepName(TovaMutableDictionaryRef ioFont, TovaStringRef iKey) {
  constexpr std::string_view kCutMark = "...";
  std::string_view tText = Tova::Text(Tova::AsString(TovaDictionaryGetValue(ioFont, iKey)));
  if (tText.size() <= FTLimits::Get().longName) return;
  if (tText.size() <= _fRoomForLongNames) {
    _fRoomForLongNames -= tText.size();
    TovaDictionarySetValue(ioFont, iKey, KeptString(tText).get());
    return;
  }
  size_t tEnd = FTLimits::Get().longName;
  while ((static_cast<uint8_t>(tText[tEnd]) & 0xC0) == 0x80) --tEnd;  // not inside a character
  const std::string tCut = std::string(tText.substr(0, tEnd)).append(kCutMark);
  TovaDictionarySetValue(ioFont, iKey, KeptString(tCut).get());
}

FindingSink ReportTree::MakeSink() const {
  if (!HasMessages()) return FindingSink();
  FindingSink::Limits tLimits{
      .bytes = _fRoom, .bytesForGrave = _fBytesForGrave, .keepsArguments = _fOptions.messageDetails};
  if (_fOptions.messageLimit != 0) tLimits.findings = _fOptions.messageLimit;
  return FindingSink(tLimits);
}

Tova::Dictionary ReportTree::MakeRecord(const FTFont& iFont, TovaDictionaryRef iDescription, TovaAbsoluteTime iTime,
                                        const FindingSink& iSink) {
  const auto tRecord =
      Tova::Adopt(HasFonts() ? TovaDictionaryCreateMutableCopy(iDescription) : TovaDictionaryCreateMutable());
  if (HasFonts()) {
    TovaDictionaryAddValue(tRecord.get(), kVornFontTestTimeStampKey, Tova::Adopt(TovaDateCreate(iTime)).get());
    Charge(kRecordBytes);
  }
  TovaDictionaryAddValue(tRecord.get(), kVornFontTestResultKey, MakeSeverityArray(iSink.Severities()).get());
  if (const Tova::Array tMessages = MakeMessages(iFont, iSink); TovaArrayGetCount(tMessages.get()) > 0) {
    TovaDictionaryAddValue(tRecord.get(), kVornFontTestMessagesKey, tMessages.get());
  }
  Charge(iSink.BytesKept());
  return Tova::Adopt(TovaDictionaryCreateCopy(tRecord.get()));
}

Tova::Array ReportTree::MakeMessages(const FTFont& iFont, const FindingSink& iSink) {
  auto tMessages = Tova::Adopt(TovaArrayCreateMutable());
  for (const Finding& tFinding : iSink.Findings()) {
    TovaArrayAppendValue(tMessages.get(), MakeMessage(iFont, iSink, tFinding).get());
  }
  if (iSink.LeftOut() > 0) {
    FindingSink tLast(FindingSink::Limits{});
    const Tova::FormatArgument tCount(iSink.LeftOut());
    tLast.AppendMessage(Severity::kInformation, nullptr, "Localizable", "%d further messages were not recorded",
                        {&tCount, 1}, {});
    TovaArrayAppendValue(tMessages.get(), MakeMessage(iFont, tLast, tLast.Findings().front()).get());
  }
  return tMessages;
}

Tova::Dictionary ReportTree::MakeMessage(const FTFont& iFont, const FindingSink& iSink, const Finding& iFinding) {
  const Tova::String tText = TextOf(iSink, iFinding);
  if (!tText) return {};
  auto tMessage = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(tMessage.get(), kVornFontTestResultKey, ConstantOf(iFinding.severity));
  TovaDictionarySetValue(tMessage.get(), kVornFontTestMessageTextKey, tText.get());
  if (_fOptions.messageDetails) {
    AddDetails(tMessage.get(), iFont, iFinding);
    AddArguments(tMessage.get(), iSink.ArgumentsOf(iFinding));
  }
  return tMessage;
}

void ReportTree::AddDetails(TovaMutableDictionaryRef ioMessage, const FTFont& iFont, const Finding& iFinding) {
  TovaDictionarySetValue(ioMessage, kVornFontTestMessageFormatKey, KeptString(iFinding.format).get());
  if (iFinding.table != 0) {
    TovaDictionarySetValue(ioMessage, kVornFontTestMessageTableKey, KeptString(FTTagText(iFinding.table)).get());
  }
  if (iFinding.glyph) {
    SetNumber(ioMessage, kVornFontTestMessageGlyphKey, *iFinding.glyph);
    AddGlyphNames(ioMessage, iFont, *iFinding.glyph);
  }
  if (iFinding.offset) SetNumber(ioMessage, kVornFontTestMessageOffsetKey, *iFinding.offset);
  if (iFinding.part) TovaDictionarySetValue(ioMessage, kVornFontTestMessagePartKey, KeptString(*iFinding.part).get());
}

void ReportTree::AddArguments(TovaMutableDictionaryRef ioMessage, std::span<const Tova::FormatArgument> iArguments) {
  if (iArguments.empty()) return;
  const auto tArguments = Tova::Adopt(TovaArrayCreateMutable());
  for (const Tova::FormatArgument& tArgument : iArguments) {
    TovaArrayAppendValue(tArguments.get(), ValueOf(tArgument).get());
  }
  TovaDictionarySetValue(ioMessage, kVornFontTestMessageArgumentsKey, tArguments.get());
}

/// An argument of a format as a value of the report.
Tova::Value ReportTree::ValueOf(const Tova::FormatArgument& iArgument) {
  switch (iArgument.kind) {
    case kTovaFormatArgumentInteger:
      return KeptNumber(iArgument.content.integer);
    case kTovaFormatArgumentReal:
      return Tova::Adopt(TovaNumberCreateWithReal(iArgument.content.real));
    case kTovaFormatArgumentText: {
      const std::string_view tText = iArgument.content.text ? iArgument.content.text : "";
      return Tova::Adopt(TovaStringCreateWithLossyUTF8(tText.data(), tText.size()));
    }
    default:
      return Tova::Share(iArgument.content.value);
  }
}

void ReportTree::SetNumber(TovaMutableDictionaryRef ioMessage, TovaStringRef iKey, uint64_t iNumber) {
  TovaDictionarySetValue(ioMessage, iKey, KeptNumber(static_cast<int64_t>(iNumber)).get());
}

/// A number, the same one each time for those that messages repeat: indexes of glyphs and parts, and characters.
Tova::Number ReportTree::KeptNumber(int64_t iNumber) {
  constexpr int64_t kNumbersKept = 0x10000;
  if (iNumber < 0 || iNumber >= kNumbersKept) return Tova::Adopt(TovaNumberCreateWithInteger(iNumber));
  const auto tIndex = static_cast<size_t>(iNumber);
  if (tIndex >= _fNumbers.size()) _fNumbers.resize(tIndex + 1);
  if (!_fNumbers[tIndex]) _fNumbers[tIndex] = Tova::Adopt(TovaNumberCreateWithInteger(iNumber));
  return _fNumbers[tIndex];
}

/// Adds the name that the font gives the glyph and the character that leads to it; nothing where there is none.
void ReportTree::AddGlyphNames(TovaMutableDictionaryRef ioMessage, const FTFont& iFont, uint32_t iGlyph) {
  const auto* tFont = dynamic_cast<const FTFont_sfnt*>(&iFont);
  if (!tFont) return;
  try {
    if (const std::optional<std::string> tName = tFont->GlyphName(iGlyph)) {
      TovaDictionarySetValue(ioMessage, kVornFontTestMessageGlyphNameKey, KeptString(*tName).get());
      Charge(kGlyphNameBytes + tName->size());
    }
    const auto tCharacter = _fCharacters.CharacterOf(iFont, iGlyph);
    if (tCharacter) SetNumber(ioMessage, kVornFontTestMessageCharacterKey, *tCharacter);
  } catch (const FTException&) {  // what is wrong with the font has been found elsewhere
  }
}

/// A translation that does not fit its arguments gives way to the original; none when that does not fit either.
Tova::String ReportTree::TextOf(const FindingSink& iSink, const Finding& iFinding) {
  const auto tArguments = iSink.ArgumentsOf(iFinding);
  for (const bool tTranslated : {true, false}) {
    if (tTranslated && _fOptions.untranslated) continue;
    const Tova::String tFormat = FormatFor(iFinding, tTranslated);
    Tova::String tText = Tova::Adopt(TovaStringCreateWithFormat(tFormat.get(), tArguments.data(), tArguments.size()));
    if (tText && iFinding.namesPart) tText = Tova::Format(NamedPartFormat(iFinding), {iFinding.part->c_str(), tText});
    if (tText) return tText;
  }
  return {};
}

Tova::String ReportTree::FormatFor(const Finding& iFinding, bool iTranslated) {
  const char* tTable = iTranslated ? iFinding.stringTable : nullptr;
  const char* tPrefix = iFinding.namesPart ? nullptr : iFinding.prefix;
  Tova::String& tKept = _fFormats[{tTable, tPrefix, iFinding.format}];
  if (!tKept) {
    Tova::String tFormat = Tova::MakeString(iFinding.format);
    if (tTable) {
      tFormat = Tova::Adopt(TovaBundleCopyLocalizedString(TovaBundleGetMain(), tFormat.get(), tFormat.get(),
                                                          Tova::MakeString(tTable).get()));
    }
    if (tPrefix) tFormat = Tova::MakeString(Escaped(tPrefix) + ": " + std::string(Tova::Text(tFormat)));
    tKept = tFormat;
  }
  return tKept;
}

/// A string of the text, the same one for the same text.
Tova::String ReportTree::KeptString(std::string_view iText) {
  Tova::String& tKept = _fStrings[std::string(iText)];
  if (!tKept) tKept = Tova::Adopt(TovaStringCreateWithLossyUTF8(iText.data(), iText.size()));
  return tKept;
}

size_t ReportTree::FormatHash::operator()(const FormatKey& iKey) const {
  const std::hash<const void*> tHash;
  return tHash(iKey.format) ^ 31 * tHash(iKey.table) ^ 961 * tHash(iKey.prefix);
}

Tova::Array MakeSeverityArray(const SeveritySet& iSeverities) {
  auto tArray = Tova::Adopt(TovaArrayCreateMutable());
  for (const Severity tSeverity : iSeverities.InOrder()) TovaArrayAppendValue(tArray.get(), ConstantOf(tSeverity));
  return tArray;
}

std::optional<Severity> SeverityOf(TovaTypeRef iConstant) {
  for (const Severity tSeverity : kSeverities) {
    if (TovaEqual(iConstant, ConstantOf(tSeverity))) return tSeverity;
  }
  return std::nullopt;
}

void AddFontDataToDictionary(TovaMutableDictionaryRef ioDictionary, const FTFont& iFont) {
  const auto tAdd = [ioDictionary](TovaStringRef iKey, TovaStringRef iText, const char* iFallback) {
    TovaDictionaryAddValue(ioDictionary, iKey, iText ? iText : LocalizedVersionOfString(iFallback).get());
  };
  try {
    tAdd(kVornFontTestFontNameKey, iFont.GetName(), kNoFontName);
    tAdd(kVornFontTestFontPostScriptNameKey, iFont.GetPostScriptName(), kNoFontName);
  } catch (const FTException&) {
    tAdd(kVornFontTestFontNameKey, nullptr, "<corrupt font name>");
  }
  try {
    tAdd(kVornFontTestFontIdentifierKey, iFont.GetIdentifier(), "<no font identifier>");
  } catch (const FTException&) {
    // quirk: identifier-under-name. The name's key is taken by now: such a font's dictionary has no identifier.
    tAdd(kVornFontTestFontNameKey, nullptr, "<corrupt font identifier>");
  }
  TovaDictionaryAddValue(ioDictionary, kVornFontTestFontTypeKey, FontTypeOf(iFont));
}
