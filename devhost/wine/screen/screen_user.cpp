#include "devhost/wine/screen/screen_user.h"

#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>

#include "devhost/wine/screen/import_table.h"
#include "devhost/wine/screen/search_window.h"
#include "platform/values/text.h"
#include "platform/windows/automation/automation_values.h"

#include <commdlg.h>

extern char** environ;

namespace pxtarvo::devhost {

namespace {

using windows::Bstr;

constexpr char16_t plugInClass[] = u"PXTarvoWindow";
constexpr char16_t dialogClass[] = u"#32770";
constexpr UINT tickInterval = 10;      // ms
constexpr DWORD keyboardRest = 120;    // ms that real input takes to arrive
constexpr DWORD keyboardDialog = 250;  // ms until a dialog has the keyboard
constexpr DWORD pictureRest = 300;     // ms until a window is painted
constexpr DWORD pictureWait = 60;      // ms until what was painted is on the display
constexpr DWORD keyLost = 3000;        // ms after which a dialog that is still there has not got its key
constexpr DWORD inputLimit = 5000;     // ms that real input may take to arrive
constexpr DWORD yieldRest = 25;        // ms, longer than a run goes on without looking for input

/// Wine's own property that names a window on the display.
constexpr const char* windowOnTheDisplay = "__wine_x11_whole_window";

ScreenUser* current = nullptr;

std::u16string classOf(HWND window) {
    OLECHAR name[64];
    const int length = GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return {reinterpret_cast<const char16_t*>(name), static_cast<std::size_t>(length)};
}

std::string textOf(HWND window) {
    OLECHAR text[256];
    const int length = GetWindowTextW(window, text, static_cast<int>(std::size(text)));
    return toUtf8({reinterpret_cast<const char16_t*>(text), static_cast<std::size_t>(length)});
}

std::string utf8Of(LPCWSTR text) {
    return text ? toUtf8(reinterpret_cast<const char16_t*>(text)) : std::string();
}

BOOL CALLBACK addWindow(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

/// Of this thread, from the top.
std::vector<HWND> threadWindows() {
    std::vector<HWND> windows;
    EnumThreadWindows(GetCurrentThreadId(), &addWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

BOOL CALLBACK findField(HWND window, LPARAM found) {
    if (classOf(window) != u"Edit" || !IsWindowVisible(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

/// Where the file dialog takes a name: the first text field, however deep it lies.
HWND fileNameField(HWND dialog) {
    HWND found = nullptr;
    EnumChildWindows(dialog, &findField, reinterpret_cast<LPARAM>(&found));
    return found;
}

/// The topmost window of this thread of one of these classes that the user sees.
HWND shownWindow(std::initializer_list<std::u16string_view> classes) {
    for (const HWND window : threadWindows()) {
        if (!IsWindowVisible(window) || !IsWindowEnabled(window)) continue;
        if (std::ranges::find(classes, classOf(window)) != classes.end()) return window;
    }
    return nullptr;
}

WPARAM virtualKey(char16_t unit) {
    constexpr WPARAM anyOtherKey = 190;
    if (unit >= u'a' && unit <= u'z') return static_cast<WPARAM>(unit - u'a' + u'A');
    const bool own = (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9');
    return own ? unit : anyOtherKey;
}

std::string keyName(std::int16_t key) {
    if (key >= 'A' && key <= 'Z') return {static_cast<char>(key - 'A' + 'a')};
    switch (key) {
        case vkReturn:
            return "Return";
        case vkEscape:
            return "Escape";
        case vkTab:
            return "Tab";
        case vkSpace:
            return "space";
        case vkF1:
            return "F1";
        case vkF4:
            return "F4";
        case vkDelete:
            return "Delete";
        case vkPageUp:
            return "Prior";
        case vkPageDown:
            return "Next";
        default:
            return "";
    }
}

POINT middleOf(HWND window) {
    RECT rect{};
    GetWindowRect(window, &rect);
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
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

/// A timer whose ticks also come in the loops of dialogs.
class Ticks {
  public:
    explicit Ticks(TIMERPROC procedure) : timer_(SetTimer(nullptr, 0, tickInterval, procedure)) {}
    Ticks(const Ticks&) = delete;
    Ticks& operator=(const Ticks&) = delete;
    ~Ticks() { KillTimer(nullptr, timer_); }

  private:
    UINT_PTR timer_;
};

/// Notices when a dialog has nothing left to do: it then tells its owner, whose window procedure this
/// watches.
class IdleWatch {
  public:
    using Noticed = void (*)();
    IdleWatch(HWND owner, Noticed noticed) : owner_(before_ ? nullptr : owner) {
        if (!owner_) return;
        noticed_ = noticed;
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
        if (message == WM_ENTERIDLE) noticed_();
        return CallWindowProcW(before_, window, message, wParam, lParam);
    }

    static inline WNDPROC before_ = nullptr;  ///< of the one window that is watched
    static inline Noticed noticed_ = nullptr;
    HWND owner_;
};

}  // namespace

struct ScreenUser::Calls {
    static void CALLBACK ticked(HWND, UINT, UINT_PTR, DWORD) { look(); }

    static void look() {
        if (current) current->tick();
    }

    static BOOL WINAPI getMessage(MSG* message, HWND window, UINT first, UINT last) {
        if (current) current->idle();
        return GetMessageW(message, window, first, last);
    }

    static int WINAPI messageBox(HWND owner, LPCWSTR text, LPCWSTR title, UINT style) {
        if (!current) return MessageBoxW(owner, text, title, style);
        const int pressed = [&] {
            const Ticks ticks(&ticked);
            const IdleWatch watch(owner, &look);
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
        if (const auto& recorder = current->session_.recorder) recorder->message(message, answer);
        current->dialogClosed();
        return pressed;
    }

    static BOOL WINAPI openFileName(OPENFILENAMEA* record) {
        if (!current) return GetOpenFileNameA(record);
        current->choosingFile_ = true;
        const BOOL chosen = [&] {
            const Ticks ticks(&ticked);
            return GetOpenFileNameA(record);
        }();
        current->choosingFile_ = false;
        current->dialogClosed();
        return chosen;
    }

    static BOOL WINAPI showWindow(HWND window, int how) {
        if (current && how == SW_HIDE) current->hidden(window);
        return ShowWindow(window, how);
    }

    static BOOL WINAPI destroyWindow(HWND window) {
        if (current) current->hidden(window);
        return DestroyWindow(window);
    }

    static void install(HMODULE plugIn) {
        const std::pair<std::string_view, void*> calls[] = {
            {"GetMessageW", reinterpret_cast<void*>(&getMessage)},
            {"MessageBoxW", reinterpret_cast<void*>(&messageBox)},
            {"GetOpenFileNameA", reinterpret_cast<void*>(&openFileName)},
            {"ShowWindow", reinterpret_cast<void*>(&showWindow)},
            {"DestroyWindow", reinterpret_cast<void*>(&destroyWindow)}};
        for (const auto& [name, call] : calls) {
            if (!replaceImport(plugIn, name, call)) {
                throw std::runtime_error("the plug-in does not import " + std::string(name));
            }
        }
    }
};

ScreenUser::ScreenUser(HMODULE plugIn, ScreenSession session)
    : session_(std::move(session)), reader_(session_.script) {
    Calls::install(plugIn);
    current = this;
}

ScreenUser::~ScreenUser() {
    for (MSG message{}; PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);) {
        // the end of a stuck session ends nothing else
    }
    current = nullptr;
}

void ScreenUser::lineRecorded(std::string_view line) {
    for (const Action* action : reader_.setOffBy(line)) {
        begin(*action);
        if (session_.hands == Hands::Keyboard) awaitInput(action->deed);
        // So that the run comes to it at its next yield, as without a screen.
        Sleep(yieldRest);
    }
}

std::optional<std::int32_t> ScreenUser::searching(
    const std::function<std::optional<std::int32_t>()>& dialog) {
    const Ticks ticks(&Calls::ticked);
    auto chosen = dialog();
    answered_ = nullptr;
    dialogSince_ = 0;
    return chosen;
}

int ScreenUser::windowsLeft() {
    return static_cast<int>(std::ranges::count_if(threadWindows(), [](HWND window) {
        const std::u16string name = classOf(window);
        return name == plugInClass || name == dialogClass || name == searchWindowClass;
    }));
}

HWND ScreenUser::window() const {
    return shownWindow({plugInClass});
}

/// The end of a window is when it disappears; a hidden one is destroyed later.
void ScreenUser::hidden(HWND window) {
    if (classOf(window) != plugInClass || std::ranges::find(gone_, window) != gone_.end()) return;
    gone_.push_back(window);
    closing_ = false;
    const std::string caption = textOf(window);
    const auto known = std::ranges::find(session_.windows, caption, &ScreenSession::KnownWindow::caption);
    if (session_.recorder) {
        session_.recorder->unload(known == session_.windows.end() ? caption : known->name);
    }
}

void ScreenUser::dialogClosed() {
    answered_ = nullptr;
    dialogSince_ = 0;
    if (session_.hands != Hands::Posted || answerKey_ == 0) return;
    // The release of the key that closed it reaches whatever has the keyboard now.
    if (const HWND focus = GetFocus()) {
        PostMessageW(focus, WM_KEYUP, static_cast<WPARAM>(answerKey_), static_cast<LPARAM>(0xC0000001u));
    }
    answerKey_ = 0;
}

bool ScreenUser::handsBusy() {
    if (child_ != 0) {
        int status = 0;
        if (waitpid(child_, &status, WNOHANG) == 0) return true;
        child_ = 0;
        if (status != 0) troubles_.push_back("xdotool failed");
        restUntil_ = GetTickCount() + keyboardRest;
    }
    return static_cast<LONG>(restUntil_ - GetTickCount()) > 0;
}

void ScreenUser::xdotool(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "xdotool");
    std::vector<char*> list;
    for (std::string& argument : arguments) list.push_back(argument.data());
    list.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawnp(&child, "xdotool", nullptr, nullptr, list.data(), environ) != 0) {
        troubles_.push_back("xdotool cannot be started");
        return;
    }
    child_ = child;
}

void ScreenUser::picture(HWND window, const std::string& name) {
    if (session_.pictures.empty()) return;
    // What is due is painted, and a wait lets Wine hand it to the display.
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    MsgWaitForMultipleObjects(0, nullptr, FALSE, pictureWait, 0);
    RECT rect{};
    GetWindowRect(window, &rect);
    const std::string place = std::to_string(rect.right - rect.left) + "x" +
                              std::to_string(rect.bottom - rect.top) + "+" + std::to_string(rect.left) + "+" +
                              std::to_string(rect.top);
    const std::string number = std::to_string(++pictures_);
    const std::string file =
        session_.pictures + "/" + std::string(number.size() < 2 ? "0" : "") + number + "-" + name + ".png";
    std::vector<std::string> arguments = {"import", "-window", "root", "-crop", place, "+repage", file};
    std::vector<char*> list;
    for (std::string& argument : arguments) list.push_back(argument.data());
    list.push_back(nullptr);
    pid_t child = 0;
    int status = 0;
    if (posix_spawnp(&child, "import", nullptr, nullptr, list.data(), environ) != 0 ||
        waitpid(child, &status, 0) < 0 || status != 0) {
        troubles_.push_back("no picture could be taken of " + name);
    }
}

/// The window waits for input and its queue is empty: the moment for the next step.
void ScreenUser::idle() {
    if (session_.hands == Hands::None) return;
    const HWND shown = window();
    if (!shown) return endStuckSession();
    if (handsBusy()) {
        Sleep(tickInterval);
        PostMessageW(shown, WM_NULL, 0, 0);
        return;
    }
    if (steps_.empty()) {
        if (const Action* action = reader_.takeInWindow()) {
            begin(*action);
        } else if (!closing_) {
            closing_ = true;
            PostMessageW(shown, WM_CLOSE, 0, 0);
        }
    } else {
        const Step step = std::move(steps_.front());
        steps_.pop_front();
        step();
    }
    // Makes the loop look again when nothing else does.
    PostMessageW(shown, WM_NULL, 0, 0);
}

std::vector<std::pair<HWND, std::string>> ScreenUser::controlsOf(HWND window) const {
    std::vector<std::pair<HWND, std::string>> controls;
    const auto known =
        std::ranges::find(session_.windows, textOf(window), &ScreenSession::KnownWindow::caption);
    if (known == session_.windows.end()) return controls;
    HWND child = GetWindow(window, GW_CHILD);
    for (const std::string& name : known->controls) {
        if (child) controls.emplace_back(child, name);
        child = child ? GetWindow(child, GW_HWNDNEXT) : nullptr;
    }
    return controls;
}

/// A window that its own error left disabled is in nobody's reach: only the end of the program closes it.
void ScreenUser::endStuckSession() {
    const bool stuck = std::ranges::any_of(threadWindows(), [](HWND window) {
        return classOf(window) == plugInClass && IsWindowVisible(window);
    });
    if (!stuck || closing_) return;
    closing_ = true;
    PostQuitMessage(0);
}

HWND ScreenUser::control(const Action& action) {
    std::string wanted = action.control;
    if (action.index != notIndexed) wanted += "(" + std::to_string(action.index) + ")";
    for (const auto& [handle, name] : controlsOf(window())) {
        if (name == wanted) return handle;
    }
    troubles_.push_back("no control " + wanted);
    return nullptr;
}

std::string ScreenUser::lookAt(const Action& action) {
    const HWND looked = action.control.empty() ? GetFocus() : control(action);
    for (const auto& [handle, name] : controlsOf(window())) {
        if (handle == looked) return action.control.empty() ? name : name + "=" + textOf(handle);
    }
    return "";
}

void ScreenUser::clickAt(HWND control) {
    if (session_.hands == Hands::Keyboard) {
        const POINT place = middleOf(control);
        return xdotool({"mousemove", std::to_string(place.x), std::to_string(place.y), "click", "1"});
    }
    RECT area{};
    GetClientRect(control, &area);
    const LPARAM place = MAKELPARAM(area.right / 2, area.bottom / 2);
    PostMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, place);
    PostMessageW(control, WM_LBUTTONUP, 0, place);
}

/// Where a window without the desktop's own frame has its close box.
void ScreenUser::closeBox(HWND window) {
    if (session_.hands != Hands::Keyboard) {
        PostMessageW(window, WM_CLOSE, 0, 0);
        return;
    }
    RECT rect{};
    GetWindowRect(window, &rect);
    const int x = rect.right - GetSystemMetrics(SM_CXDLGFRAME) - GetSystemMetrics(SM_CXSIZE) / 2;
    const int y = rect.top + GetSystemMetrics(SM_CYDLGFRAME) + GetSystemMetrics(SM_CYSIZE) / 2;
    xdotool({"mousemove", std::to_string(x), std::to_string(y), "click", "1"});
}

/// Holds a run up until what the hands did in its middle has arrived.
void ScreenUser::awaitInput(Deed deed) {
    const bool key = deed == Deed::Press;
    if (!key && deed != Deed::Click && deed != Deed::Close) return;
    const auto arrived = [&] {
        MSG release;
        if (handsBusy()) return false;
        if (key) return PeekMessageW(&release, nullptr, WM_KEYUP, WM_KEYUP, PM_NOREMOVE) != FALSE;
        return (HIWORD(GetQueueStatus(QS_MOUSEBUTTON)) & QS_MOUSEBUTTON) != 0;
    };
    const DWORD limit = GetTickCount() + inputLimit;
    while (!arrived()) {
        if (static_cast<LONG>(limit - GetTickCount()) < 0) {
            troubles_.push_back("what the hands did has not arrived");
            return;
        }
        Sleep(tickInterval);
    }
}

void ScreenUser::pressKey(HWND target, std::int16_t key, bool withRelease, Held held) {
    if (session_.hands == Hands::Keyboard) {
        const std::string with = held == Held::Shift ? "shift+" : held == Held::Alt ? "alt+" : "";
        return xdotool({"key", with + keyName(key)});
    }
    if (held != Held::None) troubles_.push_back("held keys need a keyboard");
    PostMessageW(target, WM_KEYDOWN, static_cast<WPARAM>(key), 1);
    if (withRelease) {
        PostMessageW(target, WM_KEYUP, static_cast<WPARAM>(key), static_cast<LPARAM>(0xC0000001u));
    }
}

void ScreenUser::typeText(HWND control, const std::string& text) {
    if (session_.hands == Hands::Keyboard) {
        xdotool({"key", "Home", "key", "shift+End", "key", "Delete", "type", "--delay", "20", text});
        return;
    }
    SendMessageW(control, EM_SETSEL, 0, -1);
    if (text.empty()) return pressKey(control, vkDelete, true);
    for (const char16_t unit : toUtf16(text)) {
        PostMessageW(control, WM_CHAR, unit, 1);
        PostMessageW(control, WM_KEYUP, virtualKey(unit), static_cast<LPARAM>(0xC0000001u));
    }
}

void ScreenUser::choose(const Action& action) {
    const HWND combo = control(action);
    if (!combo) return;
    SetFocus(combo);
    steps_.push_back([=] {
        const Bstr item(action.text);
        const LRESULT at = SendMessageW(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                        reinterpret_cast<LPARAM>(item.get()));
        SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(at), 0);
        SendMessageW(GetParent(combo), WM_COMMAND,
                     MAKEWPARAM(GetWindowLongPtrW(combo, GWLP_ID), CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(combo));
    });
}

void ScreenUser::begin(const Action& action) {
    if (session_.begins) session_.begins(action);
    switch (action.deed) {
        case Deed::Choose:
            return choose(action);
        case Deed::Click:
            if (const HWND target = control(action)) clickAt(target);
            return;
        case Deed::Type:
            if (const HWND target = control(action)) {
                if (GetFocus() != target) clickAt(target);
                steps_.push_back([=, this, text = action.text] { typeText(target, text); });
            }
            return;
        case Deed::Press:
            return pressKey(GetFocus() ? GetFocus() : window(), action.key, true, action.held);
        case Deed::Context:
            return session_.newContext();
        case Deed::Picture:
            restUntil_ = GetTickCount() + pictureRest;
            steps_.push_back([this, name = action.text] { picture(window(), name); });
            return;
        case Deed::Look:
            seen_.push_back(lookAt(action));
            return;
        case Deed::Close:
            return closeBox(window());
        case Deed::Message:
        case Deed::File:
        case Deed::Search:
            return;
    }
}

/// Comes while a dialog is open, a few times a second at least.
void ScreenUser::tick() {
    if (session_.hands == Hands::None) return;
    const HWND dialog = shownWindow({dialogClass, searchWindowClass});
    const DWORD now = GetTickCount();
    if (dialog && dialog == answered_ && session_.hands == Hands::Keyboard && answerKey_ != 0 &&
        now - answeredAt_ > keyLost && classOf(dialog) == dialogClass && !handsBusy()) {
        // Where the window below was hidden just before, the display can leave its focus on the desktop,
        // though Wine believes it here: it is put here, and the key is pressed once more.
        answeredAt_ = now;
        const auto shown = reinterpret_cast<std::uintptr_t>(GetPropA(dialog, windowOnTheDisplay));
        xdotool({"windowfocus", std::to_string(shown), "key", keyName(answerKey_)});
    }
    if (!dialog || dialog == answered_) return;
    if (dialogSince_ == 0) dialogSince_ = now | 1;
    DWORD rest = session_.hands == Hands::Keyboard ? keyboardDialog : 0;
    if (!session_.pictures.empty()) rest = std::max(rest, pictureRest);
    if (now - dialogSince_ < rest || handsBusy()) return;
    answered_ = dialog;
    answeredAt_ = now;
    if (classOf(dialog) == searchWindowClass) {
        picture(dialog, "search");
        answerSearch(dialog, reader_.take(Deed::Search));
    } else if (choosingFile_) {
        picture(dialog, "file");
        answerFileDialog(dialog, reader_.take(Deed::File));
    } else {
        picture(dialog, "message");
        answerMessage(dialog, reader_.take(Deed::Message));
    }
}

void ScreenUser::answerMessage(HWND box, const Action* action) {
    answerKey_ = action ? action->key : vkReturn;
    HWND button = nullptr;
    if (action && action->answer != MessageAnswer::Ok) {
        button = GetDlgItem(box, action->answer == MessageAnswer::Yes ? IDYES : IDNO);
    }
    if (answerKey_ == 0) {
        if (!button) button = GetDlgItem(box, IDOK);
        if (!button) button = GetWindow(box, GW_CHILD);
        return clickAt(button);
    }
    if (button) SendMessageW(box, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(button), TRUE);
    pressKey(GetFocus() ? GetFocus() : box, answerKey_, false);
}

void ScreenUser::answerFileDialog(HWND dialog, const Action* action) {
    const bool chosen = action && !action->text.empty();
    answerKey_ = chosen ? vkReturn : vkEscape;
    const bool byButton = action && action->answer == MessageAnswer::No;
    if (action && (byButton || action->key != vkReturn)) answerKey_ = action->key;
    if (byButton && answerKey_ != 0) {
        const HWND button = GetDlgItem(dialog, IDCANCEL);
        SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(button), TRUE);
    }
    if (chosen) {
        const Bstr path(action->text);
        if (const HWND field = fileNameField(dialog))
            SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.get()));
    }
    if (answerKey_ == 0) return clickAt(GetDlgItem(dialog, chosen ? IDOK : IDCANCEL));
    if (session_.hands == Hands::Keyboard) return pressKey(dialog, answerKey_, false);
    PostMessageW(dialog, WM_COMMAND, chosen ? IDOK : IDCANCEL, 0);
}

void ScreenUser::answerSearch(HWND window, const Action* action) {
    const std::int32_t row = action ? action->row : -1;
    if (session_.hands == Hands::Keyboard) {
        std::vector<std::string> keys = {"key"};
        for (std::int32_t at = 0; at < row; ++at) keys.emplace_back("Down");
        keys.emplace_back(row < 0 ? "Escape" : "Return");
        return xdotool(keys);
    }
    const HWND target = GetFocus() ? GetFocus() : window;
    for (std::int32_t at = 0; at < row; ++at) pressKey(target, VK_DOWN, true);
    pressKey(target, row < 0 ? vkEscape : vkReturn, true);
}

}  // namespace pxtarvo::devhost
