#pragma once

#include "platform/locale.h"

namespace pxtarvo::windows {

/// The user's regional settings, read once.
const Locale& userLocale();

}  // namespace pxtarvo::windows
