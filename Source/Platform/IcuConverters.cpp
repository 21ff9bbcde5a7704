#include "Platform/IcuConverters.h"

#include <dlfcn.h>
#include <unicode/uvernum.h>

#include <cstdio>
#include <cstdlib>

// ICU's names carry its version; its headers define them as macros, to be expanded before they become text.
#define TEXT_OF(name) #name
#define EXPANDED_TEXT_OF(name) TEXT_OF(name)

namespace Tova {
namespace {

constexpr const char* kLibrary = "libicuuc.so." EXPANDED_TEXT_OF(U_ICU_VERSION_MAJOR_NUM);

[[noreturn]] void EndProcess() {
  std::fprintf(stderr, "libTova: %s\n", dlerror());
  std::abort();
}

template <class Function>
void Find(void* library, const char* name, Function& function) {
  void* symbol = dlsym(library, name);
  if (!symbol) EndProcess();
  function = reinterpret_cast<Function>(symbol);
}

IcuConverters Load() {
  void* library = dlopen(kLibrary, RTLD_LAZY | RTLD_LOCAL);
  if (!library) EndProcess();
  IcuConverters icu;
  Find(library, EXPANDED_TEXT_OF(ucnv_open), icu.open);
  Find(library, EXPANDED_TEXT_OF(ucnv_close), icu.close);
  Find(library, EXPANDED_TEXT_OF(ucnv_setToUCallBack), icu.setToUCallBack);
  Find(library, EXPANDED_TEXT_OF(ucnv_setFromUCallBack), icu.setFromUCallBack);
  Find(library, EXPANDED_TEXT_OF(UCNV_TO_U_CALLBACK_STOP), icu.stopToU);
  Find(library, EXPANDED_TEXT_OF(UCNV_FROM_U_CALLBACK_STOP), icu.stopFromU);
  Find(library, EXPANDED_TEXT_OF(ucnv_toUChars), icu.toUChars);
  Find(library, EXPANDED_TEXT_OF(ucnv_fromUChars), icu.fromUChars);
  return icu;
}

}  // namespace

const IcuConverters& Icu() {
  static const IcuConverters icu = Load();
  return icu;
}

}  // namespace Tova
