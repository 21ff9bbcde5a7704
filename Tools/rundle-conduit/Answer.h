#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>

#include "InstalledFonts.h"

namespace conduit {

/// The reply to a message, as ConduitProtocol.hpp describes both. A message that is no request gets none, and a line in
/// the system log.
Tova::Data Answer(InstalledFonts& fonts, int32_t messageId, TovaDataRef message);

}  // namespace conduit
