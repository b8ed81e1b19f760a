// What keys and clicks do in a window: key preview, tab order, arrows within a group of option buttons,
// mnemonics, and the click that a lost-focus handler cancels. Enter and Esc do nothing when they are pressed.

#include <algorithm>

#include "platform/values/text.h"
#include "platform/windows/screen/window_view.h"
#include "platform/windows/screen/windows_desktop.h"
#include "platform/windows/system/wide_text.h"

namespace pxtarvo::windows {

namespace {

bool held(int key) {
    return GetKeyState(key) < 0;
}

/// Bits of the KeyUp event's Shift argument.
std::int16_t shiftState() {
    return static_cast<std::int16_t>((held(VK_SHIFT) ? 1 : 0) | (held(VK_CONTROL) ? 2 : 0) |
                                     (held(VK_MENU) ? 4 : 0));
}

/// Whether Alt was held when this character was typed.
bool withAlt(const MSG& message) {
    constexpr LPARAM contextCode = 1 << 29;
    return (message.lParam & contextCode) != 0;
}

wchar_t upperCase(wchar_t character) {
    CharUpperBuffW(&character, 1);
    return character;
}

/// The mnemonic of a caption in upper case, 0 for none. "&&" is a plain "&".
wchar_t mnemonicOf(std::string_view caption) {
    const WideText wide(caption);
    const wchar_t* text = wide.c_str();
    for (int at = 0; at + 1 < wide.length(); ++at) {
        if (text[at] != L'&') continue;
        if (text[++at] != L'&') return upperCase(text[at]);
    }
    return 0;
}

bool hasMnemonic(const Control& control) {
    return control.kind() == ControlKind::PushButton || control.kind() == ControlKind::OptionButton ||
           control.kind() == ControlKind::CheckBox;
}

}  // namespace

bool WindowView::preprocess(const MSG& message) {
    const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    const bool click = message.message == WM_LBUTTONDOWN || message.message == WM_LBUTTONDBLCLK ||
                       message.message == WM_RBUTTONDOWN || message.message == WM_MBUTTONDOWN;
    if (!key && !click) return false;
    if (!window_.takesInput()) return true;
    if (click) return buttonDown(message);
    settle();
    if (window_.unloaded()) return true;
    switch (message.message) {
        case WM_KEYDOWN:
            return keyDown(message.wParam);
        case WM_CHAR:
        case WM_SYSCHAR:
            if (!withAlt(message) && wantsCharacters()) return false;
            return mnemonic(upperCase(static_cast<wchar_t>(message.wParam)));
        case WM_KEYUP:
        case WM_SYSKEYUP:
            return keyUp(message.wParam);
        default:
            return false;
    }
}

bool WindowView::keyDown(WPARAM key) {
    switch (key) {
        case VK_TAB:
            if (held(VK_CONTROL)) return false;
            moveByTab(held(VK_SHIFT));
            return true;
        case VK_LEFT:
        case VK_UP:
            return moveByArrow(true);
        case VK_RIGHT:
        case VK_DOWN:
            return moveByArrow(false);
        default:
            return false;
    }
}

bool WindowView::keyUp(WPARAM key) {
    window_.keyUp(static_cast<std::int16_t>(key), shiftState());
    desktop_.keyWorkedOff(key);
    return window_.unloaded();
}

bool WindowView::focusTo(Control& control, bool byTab) {
    if (ControlView* view = viewOf(control)) view->takeFocus(byTab);
    return !settle();
}

void WindowView::moveByTab(bool backwards) {
    if (Control* const next = window_.nextTabStop(window_.activeControl(), backwards)) focusTo(*next, true);
}

bool WindowView::moveByArrow(bool backwards) {
    const auto* from = dynamic_cast<const OptionButton*>(window_.activeControl());
    if (!from) return false;
    std::vector<Control*> group;
    for (Control* control : window_.controls()) {
        const bool sameGroup =
            dynamic_cast<const OptionButton*>(control) && control->plan().container == from->plan().container;
        if (sameGroup && control->takesFocus()) group.push_back(control);
    }
    std::ranges::stable_sort(group, {}, [](const Control* control) { return control->plan().tabIndex; });
    if (backwards) std::ranges::reverse(group);
    auto next = std::ranges::find(group, static_cast<const Control*>(from));
    if (next == group.end() || ++next == group.end()) next = group.begin();
    if (group.size() > 1 && focusTo(**next, false)) viewOf(**next)->activate();
    return true;
}

/// Whether the control with the focus takes what is typed, as a text box does.
bool WindowView::wantsCharacters() const {
    const ControlView* view = activeView();
    return view && (SendMessageW(view->handle(), WM_GETDLGCODE, 0, 0) & DLGC_WANTCHARS) != 0;
}

bool WindowView::mnemonic(wchar_t character) {
    if (character == 0) return false;  // what a caption without a mnemonic has
    for (const auto& view : views_) {
        Control& control = view->control();
        if (!hasMnemonic(control) || !control.takesFocus()) continue;
        if (mnemonicOf(control.plan().caption) != character) continue;
        if (focusTo(control, false) && control.takesFocus()) view->activate();
        return true;
    }
    return false;
}

ControlView* WindowView::clickedView(HWND clicked) const {
    for (HWND at = clicked; at && at != handle_; at = GetParent(at)) {
        if (ControlView* view = viewOf(at)) return view;
    }
    return nullptr;
}

bool WindowView::buttonDown(const MSG& message) {
    ControlView* view = clickedView(message.hwnd);
    const bool focusMoves = view && message.message != WM_RBUTTONDOWN && message.message != WM_MBUTTONDOWN &&
                            view->control().takesFocus();
    // The focus handlers run here, before the control learns of the click.
    const bool delivered = focusMoves ? focusTo(view->control(), false) : !settle();
    return !delivered || window_.unloaded() || (view && !view->control().enabled());
}

void WindowView::cancelClick() {
    const HWND capturing = GetCapture();
    if (!capturing || !IsChild(handle_, capturing)) return;
    SendMessageW(capturing, WM_CANCELMODE, 0, 0);
    if (GetCapture() == capturing) ReleaseCapture();
}

}  // namespace pxtarvo::windows
