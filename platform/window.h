#pragma once

// A window: controls, the handlers of its events and the rules by which they run, the same for every body of
// the desktop. A handler without a trap of its own lets its error reach handle(), which reports it and goes
// on.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"
#include "platform/keys.h"

namespace pxtarvo {

class Platform;

struct WindowPlan {
    std::string_view name;
    std::string_view caption;
    int width = 0;   ///< client area, 1/96 inch
    int height = 0;  ///< client area, 1/96 inch
};

class Window {
  public:
    Window(Platform& platform, const WindowPlan& plan);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();

    const WindowPlan& plan() const noexcept { return plan_; }
    Platform& platform() const noexcept { return platform_; }
    /// In the order of declaration.
    const std::vector<Control*>& controls() const noexcept { return controls_; }
    /// The control behind `from` in the tab order (before it when `backwards`), round the end, of those that
    /// can have the focus now; from nullptr the first (last). nullptr where there is none. Takes no memory.
    Control* nextTabStop(const Control* from, bool backwards = false) const;

    const std::string& caption() const noexcept { return caption_; }
    void setCaption(std::string_view caption);
    const std::string& tag() const noexcept { return tag_; }
    void setTag(std::string_view tag) { tag_ = tag; }
    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled);

    /// Whether keys, clicks and the close box reach it.
    bool takesInput() const noexcept { return enabled_ && !unloaded_; }

    /// The control that has the focus, or nullptr.
    Control* activeControl() const noexcept { return active_; }

    /// Closes the window; a second call does nothing. In the middle of a run the window disappears and the
    /// run goes on to its end.
    void Unload();
    bool unloaded() const noexcept { return unloaded_; }
    /// Unloaded, with no handler running any more.
    bool finished() const noexcept { return unloaded_ && running_ == 0; }

    /// A key was released, wherever in the window the focus is (key preview).
    std::function<void(std::int16_t KeyCode, std::int16_t Shift)> onKeyUp;

    // For the bodies of the desktop.

    void observer(ControlObserver* observer) noexcept { observer_ = observer; }
    ControlObserver* observer() const noexcept { return observer_; }
    /// Runs Form_Load and puts the focus on the first control; its errors leave as they are.
    void load();
    /// Runs an event handler; its error is reported and does not leave. Nothing runs in an unloaded window.
    void handle(const std::function<void()>& handler);
    /// Runs onKeyUp.
    void keyUp(std::int16_t KeyCode, std::int16_t Shift = 0);
    /// The focus is on `control` now. The handlers run at the next settleFocus().
    void focusOn(Control& control);
    /// Runs the lost- and got-focus handlers that the focus moves made due, lost before got. True when a
    /// lost-focus handler showed a message or moved the focus: the click that caused it must not be
    /// delivered.
    bool settleFocus();

  protected:
    virtual void Form_Load() = 0;

  private:
    friend class Control;

    /// When `control` has the focus and can have it no longer: moves it to the next control in the tab order,
    /// or to none.
    void passFocusOn(const Control& control);

    Platform& platform_;
    WindowPlan plan_;
    std::string caption_;
    std::string tag_;
    std::vector<Control*> controls_;
    ControlObserver* observer_ = nullptr;
    Control* active_ = nullptr;    ///< has the focus
    Control* reported_ = nullptr;  ///< the last one whose got-focus handler ran and whose lost-focus did not
    unsigned focusMoves_ = 0;
    int running_ = 0;
    bool settling_ = false;
    bool enabled_ = true;
    bool unloaded_ = false;
};

}  // namespace pxtarvo
