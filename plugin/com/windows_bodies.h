#pragma once

// The one place that chooses the Windows bodies.

#include "plugin/pxtarvor.h"

namespace pxtarvo::com {

/// What an instance of the calling thread stands on: the thread's one platform, the host's field helper.
Entorno windowsBodies();

}  // namespace pxtarvo::com
