#pragma once

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

namespace Tova {

/// What is used of ICU's converters. The library is opened when it is first asked for: most fonts do without it, and
/// loading it takes longer than testing a small font.
struct IcuConverters {
  decltype(&ucnv_open) open;
  decltype(&ucnv_close) close;
  decltype(&ucnv_setToUCallBack) setToUCallBack;
  decltype(&ucnv_setFromUCallBack) setFromUCallBack;
  UConverterToUCallback stopToU;
  UConverterFromUCallback stopFromU;
  decltype(&ucnv_toUChars) toUChars;
  decltype(&ucnv_fromUChars) fromUChars;
};

/// Ends the process where the library is missing, as the dynamic linker would: a text that cannot be converted for that
/// reason must not count as one that does not convert.
const IcuConverters& Icu();

}  // namespace Tova
