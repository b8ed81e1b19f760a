#pragma once

#include <vector>

#include "platform/windows/system/win32.h"

namespace pxtarvo::windows {

/// Makes a window modal while it lives: disables the thread's other enabled top-level windows, and at the end
/// enables exactly those again and gives the activation back.
class ModalBlock {
  public:
    explicit ModalBlock(HWND modal);
    ModalBlock(const ModalBlock&) = delete;
    ModalBlock& operator=(const ModalBlock&) = delete;
    ~ModalBlock();

  private:
    static BOOL CALLBACK disable(HWND window, LPARAM block);

    HWND modal_;
    HWND active_;  ///< before the modal window
    std::vector<HWND> disabled_;
};

}  // namespace pxtarvo::windows
