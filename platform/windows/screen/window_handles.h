#pragma once

#include "platform/windows/system/win32.h"

namespace pxtarvo {
class Control;
class Window;
}  // namespace pxtarvo

namespace pxtarvo::windows {

/// The real window of a control, or nullptr while its window is not shown and for a control that has none of
/// its own (a shape).
HWND handleOf(const Control& control);
/// The real window, or nullptr while it is not shown.
HWND handleOf(const Window& window);

}  // namespace pxtarvo::windows
