#pragma once

#include "platform/windows/automation/reference.h"
#include "plugin/com/interfaces.h"

namespace pxtarvo::com {

/// Writes the class under its programmatic identifier and class identifier, and the type library. A failure
/// half way takes back what was written.
HRESULT registerServer();

/// Removes what registerServer() wrote as far as it still names this very file: what another copy or the DLL
/// of the other width has registered stays, and what they need with it. Succeeds where nothing is left.
HRESULT unregisterServer();

/// The type library that the DLL carries. A failure is the system's HRESULT.
HRESULT loadTypeLibrary(windows::Reference<ITypeLib>& library);

}  // namespace pxtarvo::com
