#include "platform/windows/screen/modal_block.h"

namespace pxtarvo::windows {

ModalBlock::ModalBlock(HWND modal) : modal_(modal), active_(GetActiveWindow()) {
    EnumThreadWindows(GetCurrentThreadId(), &ModalBlock::disable, reinterpret_cast<LPARAM>(this));
}

ModalBlock::~ModalBlock() {
    for (const HWND window : disabled_) {
        if (IsWindow(window)) EnableWindow(window, TRUE);
    }
    // Before the modal window goes: Windows would activate whichever window comes next, another program's
    // too.
    const HWND now = GetActiveWindow();
    if (IsWindow(active_) && IsWindowVisible(active_) && (!now || now == modal_)) SetActiveWindow(active_);
}

BOOL CALLBACK ModalBlock::disable(HWND window, LPARAM block) {
    auto& self = *reinterpret_cast<ModalBlock*>(block);
    // The input method's own windows are no windows that a user works in.
    const bool inputMethod = (GetClassLongPtrW(window, GCL_STYLE) & CS_IME) != 0;
    if (window == self.modal_ || inputMethod || !IsWindowEnabled(window)) return TRUE;
    self.disabled_.push_back(window);
    EnableWindow(window, FALSE);
    return TRUE;
}

}  // namespace pxtarvo::windows
