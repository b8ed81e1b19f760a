#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::devhost {

/// A window of the plug-in, found by its caption, and what the record and the scripts call it and its
/// controls: from the top to the bottom, shapes, which have no window of their own, left out.
struct KnownWindow {
    std::string name;
    std::string caption;
    std::vector<std::string> controls;  ///< "Text1(3)"
};

/// Finds the names of real windows and controls, and the controls of these names.
class KnownWindows {
  public:
    explicit KnownWindows(std::vector<KnownWindow> windows) : windows_(std::move(windows)) {}

    /// The caption where the window is not known.
    std::string nameOf(HWND window) const;
    /// "" for what is no control of the window's.
    std::string nameOf(HWND window, HWND control) const;
    /// nullptr where the window has no such control.
    HWND control(HWND window, std::string_view name) const;

  private:
    const KnownWindow* find(HWND window) const;
    std::vector<std::pair<HWND, std::string_view>> controlsOf(HWND window) const;

    std::vector<KnownWindow> windows_;
};

}  // namespace pxtarvo::devhost
