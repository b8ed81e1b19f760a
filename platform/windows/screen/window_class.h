#pragma once

#include <memory>

#include "platform/windows/system/win32.h"

namespace pxtarvo::windows {

/// The registration of the windows' class: there as long as a window uses it, so that it is gone before the
/// DLL is.
class WindowClass {
  public:
    explicit WindowClass(WNDPROC procedure);
    WindowClass(const WindowClass&) = delete;
    WindowClass& operator=(const WindowClass&) = delete;
    ~WindowClass();

    /// The registration that is there, or a new one. Raises 7 (out of memory) when Windows refuses.
    static std::shared_ptr<WindowClass> use(WNDPROC procedure);

    LPCWSTR name() const noexcept { return MAKEINTATOM(atom_); }

  private:
    ATOM atom_;
};

}  // namespace pxtarvo::windows
