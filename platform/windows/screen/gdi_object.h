#pragma once

#include <memory>
#include <type_traits>

#include "platform/windows/system/win32.h"

namespace pxtarvo::windows {

struct DeleteGdiObject {
    void operator()(HGDIOBJ object) const noexcept { DeleteObject(object); }
};

using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteGdiObject>;
using Brush = std::unique_ptr<std::remove_pointer_t<HBRUSH>, DeleteGdiObject>;
using Bitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteGdiObject>;

struct DeleteMemoryDc {
    void operator()(HDC dc) const noexcept { DeleteDC(dc); }
};
using MemoryDc = std::unique_ptr<std::remove_pointer_t<HDC>, DeleteMemoryDc>;

/// Puts an object into a device context for as long as it lives.
class Selected {
  public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(SelectObject(dc, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() { SelectObject(dc_, before_); }

  private:
    HDC dc_;
    HGDIOBJ before_;
};

}  // namespace pxtarvo::windows
