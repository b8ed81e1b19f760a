#include "devhost/wine/screen/known_windows.h"

#include <algorithm>

#include "devhost/wine/screen/thread_windows.h"

namespace pxtarvo::devhost {

const KnownWindow* KnownWindows::find(HWND window) const {
    const auto known = std::ranges::find(windows_, textOf(window), &KnownWindow::caption);
    return known == windows_.end() ? nullptr : &*known;
}

std::vector<std::pair<HWND, std::string_view>> KnownWindows::controlsOf(HWND window) const {
    std::vector<std::pair<HWND, std::string_view>> controls;
    const KnownWindow* const known = find(window);
    HWND child = known ? GetWindow(window, GW_CHILD) : nullptr;
    for (std::size_t at = 0; child && at < known->controls.size(); ++at) {
        controls.emplace_back(child, known->controls[at]);
        child = GetWindow(child, GW_HWNDNEXT);
    }
    return controls;
}

std::string KnownWindows::nameOf(HWND window) const {
    const KnownWindow* const known = find(window);
    return known ? known->name : textOf(window);
}

std::string KnownWindows::nameOf(HWND window, HWND control) const {
    for (const auto& [handle, name] : controlsOf(window)) {
        if (handle == control) return std::string(name);
    }
    return "";
}

HWND KnownWindows::control(HWND window, std::string_view name) const {
    for (const auto& [handle, known] : controlsOf(window)) {
        if (known == name) return handle;
    }
    return nullptr;
}

}  // namespace pxtarvo::devhost
