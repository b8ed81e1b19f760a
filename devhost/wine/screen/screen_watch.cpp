#include "devhost/wine/screen/screen_watch.h"

#include <stdexcept>

#include "devhost/wine/screen/import_table.h"
#include "platform/values/text.h"

#include <commdlg.h>

namespace pxtarvo::devhost {

namespace {

constexpr UINT tickInterval = 10;  // ms

ScreenObserver* observer = nullptr;

void CALLBACK ticked(HWND, UINT, UINT_PTR, DWORD) {
    if (observer) observer->lookForDialog();
}

/// Notices when a dialog has nothing left to do: it then tells its owner, whose window procedure this
/// watches.
class IdleWatch {
  public:
    explicit IdleWatch(HWND owner) : owner_(before_ ? nullptr : owner) {
        if (!owner_) return;
        before_ = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(owner_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&procedure)));
    }
    IdleWatch(const IdleWatch&) = delete;
    IdleWatch& operator=(const IdleWatch&) = delete;
    ~IdleWatch() {
        if (!owner_) return;
        SetWindowLongPtrW(owner_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before_));
        before_ = nullptr;
    }

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_ENTERIDLE && observer) observer->lookForDialog();
        return CallWindowProcW(before_, window, message, wParam, lParam);
    }

    static inline WNDPROC before_ = nullptr;  ///< of the one window that is watched
    HWND owner_;
};

std::string utf8Of(LPCWSTR text) {
    return text ? toUtf8(reinterpret_cast<const char16_t*>(text)) : std::string();
}

MessageIcon iconOf(UINT style) {
    switch (style & MB_ICONMASK) {
        case MB_ICONINFORMATION:
            return MessageIcon::Information;
        case MB_ICONWARNING:
            return MessageIcon::Warning;
        case MB_ICONERROR:
            return MessageIcon::Critical;
        case MB_ICONQUESTION:
            return MessageIcon::Question;
        default:
            return MessageIcon::None;
    }
}

// What stands in the place of the module's imports.

BOOL WINAPI getMessage(MSG* message, HWND window, UINT first, UINT last) {
    if (observer) observer->idle();
    return GetMessageW(message, window, first, last);
}

int WINAPI messageBox(HWND owner, LPCWSTR text, LPCWSTR title, UINT style) {
    const int pressed = [&] {
        const DialogTicks ticks;
        const IdleWatch watch(owner);
        return MessageBoxW(owner, text, title, style);
    }();
    Message message;
    message.text = utf8Of(text);
    message.title = utf8Of(title);
    message.buttons = (style & MB_TYPEMASK) == MB_YESNO ? MessageButtons::YesNo : MessageButtons::Ok;
    message.icon = iconOf(style);
    message.defaultsToNo = (style & MB_DEFMASK) == MB_DEFBUTTON2;
    const MessageAnswer answer = pressed == IDYES  ? MessageAnswer::Yes
                                 : pressed == IDNO ? MessageAnswer::No
                                                   : MessageAnswer::Ok;
    if (observer) observer->messageAnswered(message, answer);
    return pressed;
}

BOOL WINAPI openFileName(OPENFILENAMEA* record) {
    if (observer) observer->fileDialog(true);
    const BOOL chosen = [&] {
        const DialogTicks ticks;
        return GetOpenFileNameA(record);
    }();
    if (observer) observer->fileDialog(false);
    return chosen;
}

BOOL WINAPI showWindow(HWND window, int how) {
    if (observer && how == SW_HIDE) observer->windowHidden(window);
    return ShowWindow(window, how);
}

BOOL WINAPI destroyWindow(HWND window) {
    if (observer) observer->windowHidden(window);
    return DestroyWindow(window);
}

}  // namespace

ScreenWatch::ScreenWatch(HMODULE plugIn, ScreenObserver& told) {
    const std::pair<std::string_view, void*> calls[] = {
        {"GetMessageW", reinterpret_cast<void*>(&getMessage)},
        {"MessageBoxW", reinterpret_cast<void*>(&messageBox)},
        {"GetOpenFileNameA", reinterpret_cast<void*>(&openFileName)},
        {"ShowWindow", reinterpret_cast<void*>(&showWindow)},
        {"DestroyWindow", reinterpret_cast<void*>(&destroyWindow)}};
    for (const auto& [name, call] : calls) {
        if (!replaceImport(plugIn, name, call))
            throw std::runtime_error("the plug-in does not import " + std::string(name));
    }
    observer = &told;
}

ScreenWatch::~ScreenWatch() {
    observer = nullptr;
}

DialogTicks::DialogTicks() : timer_(SetTimer(nullptr, 0, tickInterval, &ticked)) {}

}  // namespace pxtarvo::devhost
