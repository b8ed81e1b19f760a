#include "devhost/wine/screen/screen_user.h"

#include <algorithm>

#include "devhost/wine/screen/search_window.h"
#include "devhost/wine/screen/thread_windows.h"
#include "platform/windows/automation/automation_values.h"

namespace pxtarvo::devhost {

namespace {

constexpr DWORD busyPause = 10;  // ms between two looks whether the hands are done
constexpr DWORD yieldRest = 25;  // ms, longer than a run goes on without looking for input

std::unique_ptr<UserHands> makeHands(Hands hands, std::vector<std::string>& troubles) {
    switch (hands) {
        case Hands::Posted:
            return makePostedHands(troubles);
        case Hands::Keyboard:
            return makeKeyboardHands(troubles);
        case Hands::None:
            break;
    }
    return nullptr;
}

HWND plugInWindow() {
    return shownWindow({plugInClass});
}

}  // namespace

ScreenUser::ScreenUser(HMODULE plugIn, ScreenSession session)
    : session_(std::move(session)),
      known_(std::move(session_.windows)),
      reader_(session_.script),
      pictures_(session_.pictures, troubles_),
      hands_(makeHands(session_.hands, troubles_)),
      watch_(plugIn, *this) {
    if (hands_) dialogs_.emplace(reader_, *hands_, pictures_);
}

ScreenUser::~ScreenUser() {
    for (MSG message{}; PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);) {
        // the end of a stuck session ends nothing else
    }
}

void ScreenUser::lineRecorded(std::string_view line) {
    for (const Action* action : reader_.setOffBy(line)) {
        if (!hands_) return;
        begin(*action);
        hands_->awaitArrival(action->deed);
        // So that the run comes to it at its next yield, as without a screen.
        Sleep(yieldRest);
    }
}

std::optional<std::int32_t> ScreenUser::searching(
    const std::function<std::optional<std::int32_t>()>& dialog) {
    const DialogTicks ticks;
    auto chosen = dialog();
    if (dialogs_) dialogs_->closed();
    return chosen;
}

int ScreenUser::windowsLeft() {
    return static_cast<int>(std::ranges::count_if(threadWindows(), [](HWND window) {
        const std::u16string name = classOf(window);
        return name == plugInClass || name == dialogClass || name == searchWindowClass;
    }));
}

void ScreenUser::lookForDialog() {
    if (dialogs_) dialogs_->look();
}

void ScreenUser::messageAnswered(const Message& message, MessageAnswer answer) {
    if (session_.recorder) session_.recorder->message(message, answer);
    if (dialogs_) dialogs_->closed();
}

void ScreenUser::fileDialog(bool open) {
    if (!dialogs_) return;
    dialogs_->choosingFile(open);
    if (!open) dialogs_->closed();
}

/// The end of a window is when it disappears; a hidden one is destroyed later.
void ScreenUser::windowHidden(HWND window) {
    if (classOf(window) != plugInClass || std::ranges::find(gone_, window) != gone_.end()) return;
    gone_.push_back(window);
    closing_ = false;
    if (session_.recorder) session_.recorder->unload(known_.nameOf(window));
}

bool ScreenUser::busy() {
    return hands_->busy() || static_cast<LONG>(restUntil_ - GetTickCount()) > 0;
}

/// The window waits for input and its queue is empty: the moment for the next step.
void ScreenUser::idle() {
    if (!hands_) return;
    const HWND shown = plugInWindow();
    if (!shown) return endStuckSession();
    if (busy()) {
        Sleep(busyPause);
    } else if (!steps_.empty()) {
        const Step step = std::move(steps_.front());
        steps_.pop_front();
        step();
    } else if (const Action* action = reader_.takeInWindow()) {
        begin(*action);
    } else if (!closing_) {
        closing_ = true;
        PostMessageW(shown, WM_CLOSE, 0, 0);
    }
    // Makes the loop look again when nothing else does.
    PostMessageW(shown, WM_NULL, 0, 0);
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
    const HWND found = known_.control(plugInWindow(), wanted);
    if (!found) troubles_.push_back("no control " + wanted);
    return found;
}

std::string ScreenUser::lookAt(const Action& action) {
    const HWND looked = action.control.empty() ? GetFocus() : control(action);
    const std::string name = known_.nameOf(plugInWindow(), looked);
    return name.empty() || action.control.empty() ? name : name + "=" + textOf(looked);
}

void ScreenUser::choose(const Action& action) {
    const HWND combo = control(action);
    if (!combo) return;
    SetFocus(combo);
    steps_.push_back([=] {
        const windows::Bstr item(action.text);
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
            if (const HWND target = control(action)) hands_->click(target);
            return;
        case Deed::Type:
            if (const HWND target = control(action)) {
                if (GetFocus() != target) hands_->click(target);
                steps_.push_back([=, this, text = action.text] { hands_->type(target, text); });
            }
            return;
        case Deed::Press:
            return hands_->press(GetFocus() ? GetFocus() : plugInWindow(), {action.key}, action.held);
        case Deed::Context:
            return session_.newContext();
        case Deed::Picture:
            restUntil_ = GetTickCount() + WindowPictures::paintingTime;
            steps_.push_back([this, name = action.text] { pictures_.take(plugInWindow(), name); });
            return;
        case Deed::Look:
            seen_.push_back(lookAt(action));
            return;
        case Deed::Close:
            return hands_->close(plugInWindow());
        case Deed::Message:
        case Deed::File:
        case Deed::Search:
            return;
    }
}

}  // namespace pxtarvo::devhost
