#include "platform/windows/screen/control_view.h"

#include "platform/windows/screen/window_view.h"
#include "platform/windows/system/module_theme.h"
#include "platform/windows/system/wide_text.h"

namespace pxtarvo::windows {

namespace {

constexpr UINT_PTR subclassId = 1;

}  // namespace

ControlView::~ControlView() {
    if (!handle_) return;
    RemoveWindowSubclass(handle_, &ControlView::procedure, subclassId);
    DestroyWindow(handle_);
}

void ControlView::create(const wchar_t* windowClass, DWORD style, DWORD extendedStyle,
                         std::string_view text) {
    handle_ = CreateWindowExW(extendedStyle, windowClass, WideText(text).c_str(),
                              WS_CHILD | WS_CLIPSIBLINGS | style, 0, 0, 0, 0, parent_.handle(), nullptr,
                              moduleHandle(), nullptr);
    if (!handle_) throw RuntimeError(ErrorNumber::OutOfMemory);
    if (!SetWindowSubclass(handle_, &ControlView::procedure, subclassId, reinterpret_cast<DWORD_PTR>(this)))
        throw RuntimeError(ErrorNumber::OutOfMemory);
}

void ControlView::place() {
    if (!handle_) return;
    const RECT place = parent_.scaled(control_.plan().rect);
    SetWindowPos(handle_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(handle_, WM_SETFONT, reinterpret_cast<WPARAM>(parent_.font()), TRUE);
}

void ControlView::applyState() {
    if (!handle_) return repaintParent();
    const Control* container = parent_.containerOf(control_);
    const bool visible = control_.visible() && (!container || container->visible());
    const bool enabled = control_.enabled() && (!container || container->enabled());
    EnableWindow(handle_, enabled);
    ShowWindow(handle_, visible ? SW_SHOWNA : SW_HIDE);
}

void ControlView::update(ControlProperty property) {
    if (property != ControlProperty::Visible && property != ControlProperty::Enabled) return;
    if (property == ControlProperty::Visible) refresh();
    parent_.applyState(control_);
}

void ControlView::repaintParent() const {
    const RECT place = parent_.scaled(control_.plan().rect);
    InvalidateRect(parent_.handle(), &place, TRUE);
}

void ControlView::deferUpdate() {
    parent_.deferUpdate();
}

void ControlView::takeFocus(bool) {
    if (handle_) SetFocus(handle_);
}

LRESULT CALLBACK ControlView::procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                        DWORD_PTR view) {
    auto& self = *reinterpret_cast<ControlView*>(view);
    return handle == self.handle_ ? self.message(message, wParam, lParam)
                                  : DefSubclassProc(handle, message, wParam, lParam);
}

LRESULT ControlView::message(UINT message, WPARAM wParam, LPARAM lParam) {
    bool kept = false;
    parent_.guard([&] { kept = intercept(message, wParam, lParam); });
    if (kept) return 0;
    if (message != WM_SETFOCUS) return DefSubclassProc(handle_, message, wParam, lParam);
    parent_.focusArrived(control_);
    takingFocus_ = true;
    const LRESULT answer = DefSubclassProc(handle_, message, wParam, lParam);
    takingFocus_ = false;
    return answer;
}

std::unique_ptr<ControlView> makeView(WindowView& parent, Control& control) {
    for (const auto make : {makeTextView, makeButtonView, makeListView, makeGridView}) {
        if (auto view = make(parent, control)) return view;
    }
    return std::make_unique<ControlView>(parent, control);
}

}  // namespace pxtarvo::windows
