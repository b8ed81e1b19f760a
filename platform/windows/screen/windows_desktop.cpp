#include "platform/windows/screen/windows_desktop.h"

#include <algorithm>

#include "platform/window.h"
#include "platform/windows/screen/window_view.h"
#include "platform/windows/system/module_theme.h"
#include "platform/windows/system/wide_text.h"

namespace pxtarvo::windows {

namespace {

using namespace std::chrono_literals;

/// How often a run that yields at every row shows what it wrote and looks for input: once in a screen's
/// frame.
constexpr auto frame = 16ms;
/// How long keys that were sent may take until they have been worked off.
constexpr auto sentKeysLimit = 1s;

/// By MessageIcon.
constexpr UINT icons[] = {0, MB_ICONINFORMATION, MB_ICONWARNING, MB_ICONERROR, MB_ICONQUESTION};

/// Makes a window modal while it lives: disables the thread's other enabled top-level windows, and at the end
/// enables exactly those again and gives the activation back.
class ModalBlock {
  public:
    explicit ModalBlock(HWND modal) : modal_(modal), active_(GetActiveWindow()) {
        EnumThreadWindows(GetCurrentThreadId(), &ModalBlock::disable, reinterpret_cast<LPARAM>(this));
    }
    ModalBlock(const ModalBlock&) = delete;
    ModalBlock& operator=(const ModalBlock&) = delete;
    ~ModalBlock() {
        for (const HWND window : disabled_) {
            if (IsWindow(window)) EnableWindow(window, TRUE);
        }
        // Before the modal window goes: Windows would activate whichever window comes next, another
        // program's too.
        const HWND now = GetActiveWindow();
        if (IsWindow(active_) && IsWindowVisible(active_) && (!now || now == modal_))
            SetActiveWindow(active_);
    }

  private:
    static BOOL CALLBACK disable(HWND window, LPARAM block) {
        auto& self = *reinterpret_cast<ModalBlock*>(block);
        // The input method's own windows are no windows that a user works in.
        const bool inputMethod = (GetClassLongPtrW(window, GCL_STYLE) & CS_IME) != 0;
        if (window == self.modal_ || inputMethod || !IsWindowEnabled(window)) return TRUE;
        self.disabled_.push_back(window);
        EnableWindow(window, FALSE);
        return TRUE;
    }

    HWND modal_;
    HWND active_;  ///< before the modal window
    std::vector<HWND> disabled_;
};

/// The screen's pointer outlives every window and desktop of its thread.
thread_local PointerShape currentPointer = PointerShape::Default;

}  // namespace

/// A window's place among the open ones.
class WindowsDesktop::Shown {
  public:
    Shown(WindowsDesktop& desktop, WindowView& view) : desktop_(desktop) { desktop.views_.push_back(&view); }
    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;
    ~Shown() {
        desktop_.views_.pop_back();
        if (WindowView* below = desktop_.top()) below->applyEnabled();
    }

  private:
    WindowsDesktop& desktop_;
};

void WindowsDesktop::showModal(Window& window) {
    window.load();
    if (window.unloaded()) return;
    WindowView view(*this, window);
    const Shown shown(*this, view);
    const ModalBlock block(view.handle());
    view.show();
    run(view);
    if (view.failure()) std::rethrow_exception(view.failure());
}

void WindowsDesktop::run(WindowView& view) {
    bool quitting = false;
    int quitCode = 0;
    while (!view.window().finished()) {
        if (workOffOne()) continue;
        refresh();
        MSG message{};
        if (GetMessageW(&message, nullptr, 0, 0) > 0) {
            workOff(message);
        } else {
            quitting = true;
            quitCode = static_cast<int>(message.wParam);
            view.window().Unload();
        }
    }
    if (quitting) PostQuitMessage(quitCode);
}

bool WindowsDesktop::workOffOne() {
    MSG message{};
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) return false;
    if (message.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(message.wParam));
        return false;
    }
    workOff(message);
    return true;
}

void WindowsDesktop::workOff(const MSG& message) {
    running_ = false;
    WindowView* view = viewAt(message.hwnd);
    if (view && view->preprocess(message)) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

WindowView* WindowsDesktop::viewAt(HWND handle) const {
    if (!handle) return nullptr;
    const HWND root = GetAncestor(handle, GA_ROOT);
    const auto found = std::ranges::find(views_, root, &WindowView::handle);
    return found == views_.end() ? nullptr : *found;
}

void WindowsDesktop::refresh() {
    for (WindowView* view : views_) view->refresh();
}

void WindowsDesktop::doEvents() {
    if (WindowView* view = top()) view->settle();
    const auto now = std::chrono::steady_clock::now();
    if (!running_ || now - yielded_ >= frame) {
        yielded_ = now;
        refresh();
        while (workOffOne()) {
        }
        running_ = true;
    }
    for (WindowView* view : views_) {
        if (view->window().unloaded()) view->refresh();
    }
}

void WindowsDesktop::sendKeys(std::string_view keys, bool wait) {
    if (keys != "\t" && keys != "{TAB}") throw RuntimeError(ErrorNumber::InvalidProcedureCall);
    INPUT strokes[2]{};
    for (INPUT& stroke : strokes) {
        stroke.type = INPUT_KEYBOARD;
        stroke.ki.wVk = VK_TAB;
        stroke.ki.wScan = static_cast<WORD>(MapVirtualKeyW(VK_TAB, MAPVK_VK_TO_VSC));
    }
    strokes[1].ki.dwFlags = KEYEVENTF_KEYUP;
    awaitingTab_ = wait;
    SendInput(2, strokes, sizeof(INPUT));
    const auto limit = std::chrono::steady_clock::now() + sentKeysLimit;
    while (awaitingTab_ && std::chrono::steady_clock::now() < limit) {
        if (!workOffOne()) MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    awaitingTab_ = false;
}

void WindowsDesktop::pointer(PointerShape shape) {
    currentPointer = shape;
    if (!showPointer()) SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW)));
}

PointerShape WindowsDesktop::pointer() const {
    return currentPointer;
}

bool WindowsDesktop::showPointer() const {
    if (currentPointer != PointerShape::ArrowHourglass) return false;
    SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_APPSTARTING)));
    return true;
}

MessageAnswer WindowsDesktop::showMessage(const Message& message) {
    WindowView* view = top();
    if (view) view->settle();
    running_ = false;
    refresh();
    // A window that was closed in the middle of its run may still be the active one: hidden, it owns nothing.
    HWND owner = GetActiveWindow();
    if (!owner && view) owner = view->handle();
    if (owner && !IsWindowVisible(owner)) owner = nullptr;
    UINT style = icons[static_cast<std::size_t>(message.icon)];
    if (!owner) style |= MB_TASKMODAL | MB_SETFOREGROUND;
    const bool question = message.buttons == MessageButtons::YesNo;
    if (question) style |= MB_YESNO;
    if (question && message.defaultsToNo) style |= MB_DEFBUTTON2;
    const bool enabled = IsWindowEnabled(owner);
    const ThemeScope theme;
    const int answer =
        MessageBoxW(owner, WideText(message.text).c_str(), WideText(message.title).c_str(), style);
    if (!enabled) EnableWindow(owner, FALSE);  // not every system leaves it as it was
    if (!question) return MessageAnswer::Ok;
    return answer == IDYES ? MessageAnswer::Yes : MessageAnswer::No;
}

}  // namespace pxtarvo::windows
