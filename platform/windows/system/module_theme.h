#pragma once

// The module that this code is part of, and the themed look of its own windows.

#include "platform/windows/system/win32.h"

namespace pxtarvo::windows {

/// The module that holds this function: the plug-in's DLL, not the host's program.
HINSTANCE moduleHandle();

/// While it lives, controls that this thread creates are the themed ones which the module's own manifest
/// (resource 2) names. Kept only around the creation of our windows and dialogs, so that no window of the
/// host changes its look. A module without that manifest gets the plain controls.
class ThemeScope {
  public:
    ThemeScope();
    ThemeScope(const ThemeScope&) = delete;
    ThemeScope& operator=(const ThemeScope&) = delete;
    ~ThemeScope();

  private:
    HANDLE context_;
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

}  // namespace pxtarvo::windows
