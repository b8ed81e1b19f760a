#pragma once

#include "platform/values/locale.h"

namespace pxtarvo::windows {

/// The user's regional settings, read once.
const Locale& userLocale();

}  // namespace pxtarvo::windows
