#pragma once

#include "platform/windows/automation/reference.h"
#include "plugin/com/interfaces.h"

namespace pxtarvo::com {

/// The type library that the DLL carries. A failure is the system's HRESULT.
HRESULT loadTypeLibrary(windows::Reference<ITypeLib>& library);

}  // namespace pxtarvo::com
