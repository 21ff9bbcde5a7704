#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>

#include "Platform/ByteView.h"

class FTWorkBudget;

/// One record of the 'name' table: its codes, its raw bytes (borrowed from the table) and its text, decoded when first
/// asked for in the encoding that platform and script imply. Copies share the text.
class FTNameTableEntry {
 public:
  FTNameTableEntry() = default;
  /// Decoding is charged to the budget, if there is one; it must outlive the entry and its copies.
  FTNameTableEntry(Tova::ByteView iBytes, uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage,
                   FTWorkBudget* ioBudget = nullptr);
  FTNameTableEntry(const FTNameTableEntry&) = default;
  FTNameTableEntry& operator=(const FTNameTableEntry&) = default;
  ~FTNameTableEntry() = default;

  /// Equal codes and raw bytes.
  bool operator==(const FTNameTableEntry& iOther) const;
  /// The text, owned by the entry: null when the bytes do not decode, U+FFFD when platform and script imply no
  /// encoding.
  TovaStringRef GetNameString() const;
  const uint8_t* GetUnswappedNameData() const { return _fBytes.Data(); }
  uint64_t GetUnswappedNameDataLength() const { return _fBytes.Size(); }
  uint32_t GetNameCode() const { return _fNameCode; }
  uint32_t GetPlatform() const { return _fPlatform; }
  uint32_t GetScript() const { return _fScript; }
  uint32_t GetLanguage() const { return _fLanguage; }

  /// The encoding of the raw bytes, kTovaTextEncodingInvalid where platform and script imply none.
  TovaTextEncoding GetEncoding() const;
  /// Puts another text in the place of the decoded one; the raw bytes stay.
  void SetNameString(const Tova::String& iName);
  /// Decodes the raw bytes anew. Throws "A memory allocation operation failed" when there are none, not even none of
  /// length 0.
  void ReplaceNameStringFromUnswappedNameData() const;

 private:
  Tova::ByteView _fBytes;
  bool _fHasBytes = false;
  uint32_t _fNameCode = 0;
  uint32_t _fPlatform = 0;
  uint32_t _fScript = 0;
  uint32_t _fLanguage = 0;
  FTWorkBudget* _fBudget = nullptr;
  mutable bool _fDecoded = false;
  mutable Tova::String _fNameString;
};
