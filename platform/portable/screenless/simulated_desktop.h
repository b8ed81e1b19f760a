#pragma once

#include <deque>
#include <string_view>
#include <vector>

#include "platform/desktop.h"
#include "platform/portable/screenless/simulated_user.h"
#include "platform/window.h"

namespace pxtarvo::portable {

/// A desktop without a screen. What the user does follows the rules of the real one: a click moves the focus
/// first, handlers of a focus move run before the next input, a click whose lost-focus handler showed a
/// message or moved the focus is not delivered, keys released reach the window before its controls, and a
/// disabled window takes neither keys nor its close box.
class SimulatedDesktop : public Desktop {
  public:
    /// `user` must outlive the desktop.
    explicit SimulatedDesktop(SimulatedUser& user) : user_(user) {}

    void showModal(Window& window) override;
    bool getOpenFileName(OpenFileName& record) override;
    void doEvents() override;
    void sendKeys(std::string_view keys, bool wait) override;
    void pointer(PointerShape shape) override { pointer_ = shape; }
    PointerShape pointer() const override { return pointer_; }
    void unloaded(Window& window) override { user_.windowUnloaded(window); }

    /// The topmost open window, or nullptr.
    Window* activeWindow() const { return windows_.empty() ? nullptr : windows_.back(); }

    // What a user can do. Acting on a control that cannot be reached (disabled, hidden, of a window below
    // another or closed) raises std::logic_error: no user could.

    /// Clicks a push button, option button, check box or text box. False when the click was not delivered.
    bool click(Control& control);
    /// Puts the focus into the box, selects what it holds and types `text` over it.
    void type(TextBox& box, std::string_view text);
    void choose(ComboBox& combo, std::string_view item);
    void chooseRow(DataGrid& grid, std::int32_t position);
    /// Presses and releases a key in the active window.
    void press(std::int16_t key);
    void close(Window& window) {
        if (window.takesInput()) window.Unload();
    }

    /// A dialog of the host's own opens on top: it takes the keys pressed and released so far.
    void dialogOpens();

  protected:
    MessageAnswer showMessage(const Message& message) override;

  private:
    void requireReachable(const Control& control) const;
    bool focus(Control& control);
    void release(std::int16_t key);
    void typeCharacter(TextBox& box, std::string_view character, bool& replacing);
    void workOffKeys();

    SimulatedUser& user_;
    std::vector<Window*> windows_;
    std::deque<std::int16_t> pendingKeys_;
    std::deque<std::int16_t> pendingReleases_;  ///< of keys that closed a message box or dialog
    PointerShape pointer_ = PointerShape::Default;
};

}  // namespace pxtarvo::portable
