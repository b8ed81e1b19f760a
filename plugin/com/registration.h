#pragma once

#include "plugin/com/interfaces.h"

namespace pxtarvo::com {

/// Writes the class under its programmatic identifier and class identifier, and the type library. A failure
/// half way takes back what was written.
HRESULT registerServer();

/// Removes what registerServer() writes; succeeds where it is gone already.
HRESULT unregisterServer();

}  // namespace pxtarvo::com
