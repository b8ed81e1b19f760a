#include "platform/windows/screen/window_view.h"

#include <algorithm>
#include <mutex>
#include <ranges>

#include "platform/windows/screen/window_handles.h"
#include "platform/windows/screen/windows_desktop.h"
#include "platform/windows/system/module_theme.h"
#include "platform/windows/system/wide_text.h"

namespace pxtarvo::windows {

namespace {

constexpr int unitsPerInch = 96;
constexpr int fontPoints = 8;
constexpr wchar_t fontName[] = L"Tahoma";
constexpr int pointsPerInch = 72;
constexpr int fieldPadding = 3;  // above and below a field's text together, 1/96 inch

/// Posted to the window itself: the focus handlers are due, before the next input.
constexpr UINT messageSettle = WM_APP + 1;
constexpr UINT messageDpiChanged = 0x02E0;  // WM_DPICHANGED, newer than the headers' level

constexpr DWORD windowStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD windowExtendedStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT | WS_EX_APPWINDOW;

/// A function of user32 that older systems lack, or nullptr.
template <class Function>
Function newerFunction(const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), name)));
}

int dpiOf(HWND window) {
    if (const auto getDpi = newerFunction<UINT(WINAPI*)(HWND)>("GetDpiForWindow")) {
        if (const UINT dpi = getDpi(window)) return static_cast<int>(dpi);
    }
    const HDC dc = GetDC(window);
    const int dpi = GetDeviceCaps(dc, LOGPIXELSX);
    ReleaseDC(window, dc);
    return dpi;
}

/// The name of the windows' class, which is registered as long as a window uses it, so that it is gone before
/// the DLL is. Raises 7 (out of memory) when Windows refuses.
std::shared_ptr<const wchar_t> windowClass(WNDPROC procedure) {
    static std::mutex lock;
    static std::weak_ptr<const wchar_t> registered;
    const std::lock_guard guard(lock);
    if (auto name = registered.lock()) return name;
    WNDCLASSEXW description{};
    description.cbSize = sizeof(description);
    description.lpfnWndProc = procedure;
    description.hInstance = moduleHandle();
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = L"PXTarvoWindow";
    const ATOM atom = RegisterClassExW(&description);
    if (atom == 0) throw RuntimeError(ErrorNumber::OutOfMemory);
    const std::shared_ptr<const wchar_t> name(MAKEINTATOM(atom), [](const wchar_t* registeredName) {
        UnregisterClassW(registeredName, moduleHandle());
    });
    registered = name;
    return name;
}

SIZE sizeOf(const RECT& rect) {
    return {rect.right - rect.left, rect.bottom - rect.top};
}

}  // namespace

WindowView::WindowView(WindowsDesktop& desktop, Window& window)
    : desktop_(desktop), window_(window), class_(windowClass(&WindowView::procedure)) {
    const ThemeScope theme;
    CreateWindowExW(windowExtendedStyle, class_.get(), WideText(window.caption()).c_str(), windowStyle, 0, 0,
                    0, 0, nullptr, nullptr, moduleHandle(), this);
    if (!handle_) throw RuntimeError(ErrorNumber::OutOfMemory);
    try {
        createControls();
    } catch (...) {
        SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
        DestroyWindow(handle_);
        throw;
    }
    layOut(dpiOf(handle_), nullptr);
    for (const auto& view : views_) view->applyState();
    applyEnabled();
    // Mnemonics and the focus are always marked, as the users of such systems know it.
    SendMessageW(handle_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEACCEL | UISF_HIDEFOCUS), 0);
    window_.observer(this);
}

WindowView::~WindowView() {
    window_.observer(nullptr);
    SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
    ShowWindow(handle_, SW_HIDE);  // at once, not control by control
    views_.clear();
    DestroyWindow(handle_);
}

void WindowView::createControls() {
    for (Control* control : window_.controls()) {
        views_.push_back(makeView(*this, *control));
        grids_ |= control->kind() == ControlKind::DataGrid;
    }
    // New children lie beneath the ones before them; frames lie beneath everything, outer ones beneath those
    // that they hold.
    for (const auto& view : std::views::reverse(views_)) {
        if (view->control().kind() == ControlKind::Frame)
            SetWindowPos(view->handle(), HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

void WindowView::layOut(int dpi, const POINT* corner) {
    dpi_ = dpi;
    Font before = std::exchange(
        font_, Font(CreateFontW(-MulDiv(fontPoints, dpi, pointsPerInch), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
                                FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                                DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, fontName)));
    {
        const MemoryDc memory(CreateCompatibleDC(nullptr));
        const Selected selected(memory.get(), font_.get());
        TEXTMETRICW metrics{};
        GetTextMetricsW(memory.get(), &metrics);
        fieldHeight_ =
            metrics.tmHeight + 2 * GetSystemMetrics(SM_CYEDGE) + MulDiv(fieldPadding, dpi, unitsPerInch);
    }
    const int clientWidth = MulDiv(window_.plan().width, dpi, unitsPerInch);
    const int clientHeight = MulDiv(window_.plan().height, dpi, unitsPerInch);
    SetWindowPos(handle_, nullptr, 0, 0, clientWidth, clientHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT outer{}, inner{};
    GetWindowRect(handle_, &outer);
    GetClientRect(handle_, &inner);
    const int width = clientWidth + sizeOf(outer).cx - sizeOf(inner).cx;
    const int height = clientHeight + sizeOf(outer).cy - sizeOf(inner).cy;
    POINT place{};
    if (corner) {
        place = *corner;
    } else {
        MONITORINFO monitor{};
        monitor.cbSize = sizeof(monitor);
        GetMonitorInfoW(MonitorFromWindow(handle_, MONITOR_DEFAULTTOPRIMARY), &monitor);
        const RECT& work = monitor.rcWork;
        place.x = work.left + std::max(0L, (sizeOf(work).cx - width) / 2);
        place.y = work.top + std::max(0L, (sizeOf(work).cy - height) / 2);
    }
    SetWindowPos(handle_, nullptr, place.x, place.y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    for (const auto& view : views_) view->place();
    InvalidateRect(handle_, nullptr, TRUE);
}

RECT WindowView::scaled(const Rect& rect) const {
    const auto pixels = [this](int units) { return static_cast<LONG>(MulDiv(units, dpi_, unitsPerInch)); };
    return {pixels(rect.left), pixels(rect.top), pixels(rect.left + rect.width),
            pixels(rect.top + rect.height)};
}

ControlView* WindowView::viewOf(const Control& control) const {
    const auto found = std::ranges::find(views_, &control, [](const auto& view) { return &view->control(); });
    return found == views_.end() ? nullptr : found->get();
}

ControlView* WindowView::viewOf(HWND handle) const {
    const auto found = std::ranges::find(views_, handle, [](const auto& view) { return view->handle(); });
    return !handle || found == views_.end() ? nullptr : found->get();
}

const Control* WindowView::containerOf(const Control& control) const {
    const std::string_view name = control.plan().container;
    if (name.empty()) return nullptr;
    const auto& controls = window_.controls();
    const auto found =
        std::ranges::find(controls, name, [](const Control* other) { return other->plan().name; });
    return found == controls.end() ? nullptr : *found;
}

void WindowView::show() {
    ShowWindow(handle_, SW_SHOW);
    SetForegroundWindow(handle_);
    restoreFocus();
    UpdateWindow(handle_);
}

void WindowView::applyState(const Control& control) {
    for (const auto& view : views_) {
        if (&view->control() == &control || containerOf(view->control()) == &control) view->applyState();
    }
}

void WindowView::applyEnabled() {
    EnableWindow(handle_, window_.enabled());
    // It went when the window was disabled.
    if (window_.enabled() && GetActiveWindow() == handle_) restoreFocus();
}

void WindowView::refresh() {
    if (window_.unloaded() && IsWindowVisible(handle_)) ShowWindow(handle_, SW_HIDE);
    if (!std::exchange(stale_, false) && !grids_) return;
    for (const auto& view : views_) view->refresh();
}

/// A window that its code disables is about to wait, and no message loop paints it meanwhile.
void WindowView::showNow() {
    refresh();
    RedrawWindow(handle_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

bool WindowView::settle() {
    const bool disturbed = window_.settleFocus();
    if (disturbed) cancelClick();
    return disturbed;
}

void WindowView::focusArrived(Control& control) {
    if (window_.activeControl() == &control) return;
    window_.focusOn(control);
    postSettle();
}

void WindowView::postSettle() {
    PostMessageW(handle_, messageSettle, 0, 0);
}

ControlView* WindowView::activeView() const {
    const Control* active = window_.activeControl();
    return active ? viewOf(*active) : nullptr;
}

void WindowView::restoreFocus() {
    const ControlView* view = activeView();
    SetFocus(view ? view->handle() : handle_);
}

void WindowView::controlChanged(Control& control, ControlProperty property) {
    if (ControlView* view = viewOf(control)) view->update(property);
}

void WindowView::focusMoved() {
    // A window that is not active takes the focus to its active control when it becomes so.
    if (GetActiveWindow() == handle_) restoreFocus();
    postSettle();
}

void WindowView::windowChanged() {
    SetWindowTextW(handle_, WideText(window_.caption()).c_str());
    if (!window_.enabled()) showNow();
    if (!window_.enabled() || desktop_.uncovered(*this)) applyEnabled();
}

void WindowView::wakeWhenFinished() noexcept {
    // A message sent from elsewhere does not make the waiting loop look at the window's end.
    if (woken_ || !window_.finished()) return;
    woken_ = true;
    desktop_.wake();
}

void WindowView::fail() noexcept {
    if (!failure_) failure_ = std::current_exception();
    window_.Unload();
}

void WindowView::paint() {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(handle_, &paint);
    for (const auto& view : views_) {
        if (view->control().kind() != ControlKind::Shape || !view->control().visible()) continue;
        RECT edge = scaled(view->control().plan().rect);
        DrawEdge(dc, &edge, EDGE_ETCHED, BF_RECT);
    }
    EndPaint(handle_, &paint);
}

bool WindowView::setCursor(WPARAM wParam, LPARAM lParam) const {
    const auto place = static_cast<SHORT>(LOWORD(lParam));
    const bool disabled = place == HTERROR;
    // A click beside a message box brings the box to the front.
    if (disabled && HIWORD(lParam) != WM_MOUSEMOVE) DefWindowProcW(handle_, WM_SETCURSOR, wParam, lParam);
    return (disabled || place == HTCLIENT) && desktop_.showPointer();
}

LRESULT CALLBACK WindowView::procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* created =
            static_cast<WindowView*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
        created->handle_ = handle;
        SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
    }
    auto* view = reinterpret_cast<WindowView*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    LRESULT answer = 0;
    bool done = false;
    if (view) view->guard([&] { done = view->message(message, wParam, lParam, answer); });
    return done ? answer : DefWindowProcW(handle, message, wParam, lParam);
}

bool WindowView::message(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
    switch (message) {
        case WM_CLOSE:
            if (IsWindowEnabled(handle_)) window_.Unload();
            return true;
        case messageSettle:
            settle();
            return true;
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_INACTIVE) return false;
            restoreFocus();
            return true;
        case WM_SETFOCUS:
            restoreFocus();
            return true;
        case WM_SETCURSOR:
            return setCursor(wParam, lParam);
        case WM_DESTROY:
            window_.Unload();  // the host's doing: our own end no longer comes here
            return true;
        case WM_PAINT:
            paint();
            return true;
        case messageDpiChanged: {
            const RECT& place = *reinterpret_cast<const RECT*>(lParam);
            const POINT corner{place.left, place.top};
            layOut(LOWORD(wParam), &corner);
            return true;
        }
        case WM_COMMAND:
            if (ControlView* view = viewOf(reinterpret_cast<HWND>(lParam))) {
                view->command(HIWORD(wParam));
                return true;
            }
            return false;
        case WM_NOTIFY: {
            auto& header = *reinterpret_cast<NMHDR*>(lParam);
            if (ControlView* view = viewOf(header.hwndFrom)) view->notify(header, answer);
            return answer != 0;
        }
        case WM_DRAWITEM: {
            const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
            ControlView* view = viewOf(item.hwndItem);
            if (view) view->draw(item);
            return view != nullptr;
        }
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
            if (ControlView* view = viewOf(reinterpret_cast<HWND>(lParam))) {
                answer = reinterpret_cast<LRESULT>(view->colors(message, reinterpret_cast<HDC>(wParam)));
            }
            return answer != 0;
        default:
            return false;
    }
}

HWND handleOf(const Control& control) {
    const auto* view = dynamic_cast<const WindowView*>(control.window().observer());
    const ControlView* shown = view ? view->viewOf(control) : nullptr;
    return shown ? shown->handle() : nullptr;
}

HWND handleOf(const Window& window) {
    const auto* view = dynamic_cast<const WindowView*>(window.observer());
    return view ? view->handle() : nullptr;
}

}  // namespace pxtarvo::windows
