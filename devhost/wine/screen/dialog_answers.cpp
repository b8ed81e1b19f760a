#include "devhost/wine/screen/dialog_answers.h"

#include <algorithm>

#include "devhost/wine/screen/search_window.h"
#include "devhost/wine/screen/thread_windows.h"
#include "platform/windows/automation/automation_values.h"

namespace pxtarvo::devhost {

namespace {

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

HWND focusIn(HWND dialog) {
    return GetFocus() ? GetFocus() : dialog;
}

}  // namespace

void DialogAnswers::look() {
    const HWND dialog = shownWindow({dialogClass, searchWindowClass});
    if (!dialog) return;
    if (dialog == answered_) return hands_.dialogStays(dialog);
    const DWORD now = GetTickCount();
    if (since_ == 0) since_ = now | 1;
    const DWORD rest = std::max(hands_.dialogRest(), pictures_.kept() ? WindowPictures::paintingTime : 0);
    if (now - since_ < rest || hands_.busy()) return;
    answered_ = dialog;
    if (classOf(dialog) == searchWindowClass) {
        pictures_.take(dialog, "search");
        answerSearch(dialog, reader_.take(Deed::Search));
    } else if (choosingFile_) {
        pictures_.take(dialog, "file");
        answerFileDialog(dialog, reader_.take(Deed::File));
    } else {
        pictures_.take(dialog, "message");
        answerMessage(dialog, reader_.take(Deed::Message));
    }
}

void DialogAnswers::closed() {
    answered_ = nullptr;
    since_ = 0;
    hands_.dialogGone();
}

void DialogAnswers::answerMessage(HWND box, const Action* action) {
    const std::int16_t key = action ? action->key : vkReturn;
    HWND button = nullptr;
    if (action && action->answer != MessageAnswer::Ok) {
        button = GetDlgItem(box, action->answer == MessageAnswer::Yes ? IDYES : IDNO);
    }
    if (key == 0) {
        if (!button) button = GetDlgItem(box, IDOK);
        return hands_.click(button ? button : GetWindow(box, GW_CHILD));
    }
    if (button) SendMessageW(box, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(button), TRUE);
    hands_.pressInDialog(box, focusIn(box), key);
}

void DialogAnswers::answerFileDialog(HWND dialog, const Action* action) {
    const bool chosen = action && !action->text.empty();
    const WORD command = chosen ? IDOK : IDCANCEL;
    const bool byButton = action && action->answer == MessageAnswer::No;
    std::int16_t key = chosen ? vkReturn : vkEscape;
    if (action && (byButton || action->key != vkReturn)) key = action->key;
    if (byButton && key != 0) {
        const HWND button = GetDlgItem(dialog, IDCANCEL);
        SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(button), TRUE);
    }
    if (chosen) {
        const windows::Bstr path(action->text);
        if (const HWND field = fileNameField(dialog))
            SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.get()));
    }
    if (key == 0) return hands_.click(GetDlgItem(dialog, command));
    hands_.pressInDialog(dialog, dialog, key, command);
}

void DialogAnswers::answerSearch(HWND window, const Action* action) {
    const std::int32_t row = action ? action->row : -1;
    std::vector<std::int16_t> keys(static_cast<std::size_t>(std::max(row, 0)), vkDown);
    keys.push_back(row < 0 ? vkEscape : vkReturn);
    hands_.press(focusIn(window), keys);
}

}  // namespace pxtarvo::devhost
