#include "devhost/wine/screen/thread_windows.h"

#include <algorithm>

#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

BOOL CALLBACK addWindow(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

}  // namespace

std::vector<HWND> threadWindows() {
    std::vector<HWND> windows;
    EnumThreadWindows(GetCurrentThreadId(), &addWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

HWND shownWindow(std::initializer_list<std::u16string_view> classes) {
    for (const HWND window : threadWindows()) {
        if (!IsWindowVisible(window) || !IsWindowEnabled(window)) continue;
        if (std::ranges::find(classes, classOf(window)) != classes.end()) return window;
    }
    return nullptr;
}

std::u16string classOf(HWND window) {
    OLECHAR name[64];
    const int length = GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return {reinterpret_cast<const char16_t*>(name), static_cast<std::size_t>(length)};
}

std::string textOf(HWND window) {
    OLECHAR text[256];
    const int length = GetWindowTextW(window, text, static_cast<int>(std::size(text)));
    return toUtf8({reinterpret_cast<const char16_t*>(text), static_cast<std::size_t>(length)});
}

}  // namespace pxtarvo::devhost
