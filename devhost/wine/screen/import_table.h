#pragma once

#include <string_view>

#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::devhost {

/// Puts a function of this host in the place of one that a loaded module imports, for the process's lifetime:
/// so the host sees what the module asks of the system. Gives what stood there, or nullptr where the module
/// imports no function of this name.
void* replaceImport(HMODULE module, std::string_view function, void* replacement);

/// Whether a loaded module imports a function of this name.
bool imports(HMODULE module, std::string_view function);

}  // namespace pxtarvo::devhost
