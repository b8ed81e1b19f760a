#include "platform/windows/screen/window_class.h"

#include <mutex>

#include "platform/values/runtime_error.h"
#include "platform/windows/system/module_theme.h"

namespace pxtarvo::windows {

WindowClass::WindowClass(WNDPROC procedure) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof(description);
    description.lpfnWndProc = procedure;
    description.hInstance = moduleHandle();
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = L"PXTarvoWindow";
    atom_ = RegisterClassExW(&description);
    if (atom_ == 0) throw RuntimeError(ErrorNumber::OutOfMemory);
}

WindowClass::~WindowClass() {
    UnregisterClassW(name(), moduleHandle());
}

std::shared_ptr<WindowClass> WindowClass::use(WNDPROC procedure) {
    static std::mutex lock;
    static std::weak_ptr<WindowClass> registered;
    const std::lock_guard guard(lock);
    std::shared_ptr<WindowClass> here = registered.lock();
    if (!here) registered = here = std::make_shared<WindowClass>(procedure);
    return here;
}

}  // namespace pxtarvo::windows
