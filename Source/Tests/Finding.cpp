#include "Tests/Finding.h"

#include <cstring>

namespace {

/// About what a message takes in a report besides its text: a dictionary, its entries and the values that are no texts.
constexpr uint64_t kMessageBytes = 384;
/// About what the array of its arguments takes, and one of them, their texts aside.
constexpr uint64_t kArgumentsBytes = 64;
constexpr uint64_t kArgumentBytes = 16;

uint64_t TextBytesOf(const Tova::FormatArgument& iArgument) {
  if (iArgument.kind == kTovaFormatArgumentText)
    return iArgument.content.text ? std::strlen(iArgument.content.text) : 0;
  if (iArgument.kind == kTovaFormatArgumentValue) return Tova::Text(Tova::AsString(iArgument.content.value)).size();
  return 0;
}

}  // namespace

bool FindingSink::HasRoomFor(Severity iSeverity, uint64_t iBytes) const {
  const uint64_t tReserved = iSeverity >= Severity::kMajorError ? 0 : _fLimits.bytesForGrave;
  return _fFindings.size() < _fLimits.findings && _fBytes + tReserved + iBytes <= _fLimits.bytes;
}

void FindingSink::AppendMessage(Severity iSeverity, const char* iPrefix, const char* iStringTable, const char* iFormat,
                                std::span<const Tova::FormatArgument> iArguments, const Place& iPlace,
                                bool iNamesPart) {
  if (!_fWantsMessages) return;
  uint64_t tBytes = kMessageBytes + std::strlen(iFormat);
  if (_fLimits.keepsArguments && !iArguments.empty()) tBytes += kArgumentsBytes;
  for (const Tova::FormatArgument& tArgument : iArguments) {
    tBytes += TextBytesOf(tArgument);
    if (_fLimits.keepsArguments) tBytes += kArgumentBytes + TextBytesOf(tArgument);
  }
  if (iNamesPart) tBytes += iPlace.part.size();
  if (!HasRoomFor(iSeverity, tBytes)) {
    ++_fLeftOut;
    return;
  }
  _fBytes += tBytes;
  _fFindings.push_back({.prefix = iPrefix,
                        .stringTable = iStringTable,
                        .format = iFormat,
                        .firstArgument = _fArguments.size(),
                        .argumentCount = static_cast<uint32_t>(iArguments.size()),
                        .table = iPlace.table,
                        .glyph = iPlace.glyph,
                        .offset = iPlace.offset,
                        .part = KeepPart(iPlace.part),
                        .severity = iSeverity,
                        .namesPart = iNamesPart && !iPlace.part.empty()});
  for (const Tova::FormatArgument& tArgument : iArguments) KeepArgument(tArgument);
}

void FindingSink::KeepArgument(const Tova::FormatArgument& iArgument) {
  if (iArgument.kind == kTovaFormatArgumentText && iArgument.content.text) {
    _fArguments.emplace_back(_fTexts.emplace_back(iArgument.content.text).c_str());
  } else {
    if (iArgument.kind == kTovaFormatArgumentValue) _fValues.push_back(Tova::Share(iArgument.content.value));
    _fArguments.push_back(iArgument);
  }
}

const std::string* FindingSink::KeepPart(const std::string& iPart) {
  if (iPart.empty()) return nullptr;
  if (_fParts.empty() || _fParts.back() != iPart) _fParts.push_back(iPart);
  return &_fParts.back();
}
