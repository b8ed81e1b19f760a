#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/user_script.h"
#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::devhost {

/// What a user does to windows with keys and the mouse; it arrives when the thread looks for input next.
class UserHands {
  public:
    virtual ~UserHands() = default;

    /// In the middle of the control.
    virtual void click(HWND control) = 0;
    /// The close box of a window.
    virtual void close(HWND window) = 0;
    /// Over what the box holds; it has the keyboard.
    virtual void type(HWND box, std::string_view text) = 0;
    /// Each key pressed and released, the first of them while another one is held.
    virtual void press(HWND target, const std::vector<std::int16_t>& keys, Held held = Held::None) = 0;

    /// The key that closes a dialog, with `target` in it having the keyboard: its release reaches whatever
    /// has the keyboard afterwards. `command` is what the key does in the dialog, 0 for what `target` makes
    /// of the key itself.
    virtual void pressInDialog(HWND dialog, HWND target, std::int16_t key, WORD command = 0) = 0;
    /// The dialog is still there although its key was pressed.
    virtual void dialogStays(HWND) {}
    virtual void dialogGone() {}
    /// ms from a dialog's appearance until it has the keyboard.
    virtual DWORD dialogRest() const { return 0; }

    /// Whether what was done last has not arrived yet.
    virtual bool busy() { return false; }
    /// Waits until what was done in the middle of a run is there to be looked for.
    virtual void awaitArrival(Deed) {}
};

/// By messages posted into the windows' queue.
std::unique_ptr<UserHands> makePostedHands(std::vector<std::string>& troubles);
/// By real keys and the mouse of the X display, through xdotool.
std::unique_ptr<UserHands> makeKeyboardHands(std::vector<std::string>& troubles);

}  // namespace pxtarvo::devhost
