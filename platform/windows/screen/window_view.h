#pragma once

// The real window behind a Window: shows its controls, observes them, and passes on what the user does by the
// rules of key preview and focus that hold in every message loop.

#include <exception>
#include <memory>
#include <vector>

#include "platform/window.h"
#include "platform/windows/screen/control_view.h"
#include "platform/windows/screen/gdi_object.h"

namespace pxtarvo::windows {

class WindowsDesktop;

class WindowView : public ControlObserver {
  public:
    /// Makes the real window and its controls, hidden, as the loaded `window` has them. Both arguments must
    /// outlive the view.
    WindowView(WindowsDesktop& desktop, Window& window);
    WindowView(const WindowView&) = delete;
    WindowView& operator=(const WindowView&) = delete;
    ~WindowView() override;

    HWND handle() const noexcept { return handle_; }
    Window& window() const noexcept { return window_; }
    WindowsDesktop& desktop() const noexcept { return desktop_; }
    /// Pixels per inch.
    int dpi() const noexcept { return dpi_; }
    HFONT font() const noexcept { return font_.get(); }
    /// Of a field with one line of text and its edges, in pixels: text boxes and drop-down lists, which would
    /// leave a higher one's text at the top, stand in the middle of their place with this height.
    int fieldHeight() const noexcept { return fieldHeight_; }
    RECT scaled(const Rect& rect) const;
    /// nullptr for a control of another window.
    ControlView* viewOf(const Control& control) const;
    /// nullptr for a handle that is not a control's own.
    ControlView* viewOf(HWND handle) const;
    /// The frame that holds a control, or nullptr.
    const Control* containerOf(const Control& control) const;

    /// Shows the window and puts the focus on its active control.
    void show();
    /// Visible and enabled of a control and of what it contains.
    void applyState(const Control& control);
    /// Enabled as the window says; for a window that nothing modal covers.
    void applyEnabled();

    // Of the message loops.

    /// A message taken from the queue for this window or a control of it. True when it was worked off here
    /// and must not be dispatched.
    bool preprocess(const MSG& message);
    /// Runs the focus handlers that are due. True when the click under way was cancelled.
    bool settle();
    /// Shows what was deferred: texts and progress, a grid's current row, the disappearance of an unloaded
    /// window.
    void refresh();
    /// What left a handler and is no run-time error; it has closed the window.
    std::exception_ptr failure() const noexcept { return failure_; }

    // Of the controls.

    /// Runs what a window procedure does: no exception leaves it.
    template <class Action>
    void guard(Action&& action) noexcept {
        try {
            action();
        } catch (...) {
            fail();
        }
        wakeWhenFinished();
    }
    void focusArrived(Control& control);
    void deferUpdate() noexcept { stale_ = true; }

    void controlChanged(Control& control, ControlProperty property) override;
    void focusMoved() override;
    void windowChanged() override;

  private:
    static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
    /// True when the message was worked off with `answer`.
    bool message(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer);
    void wakeWhenFinished() noexcept;
    void fail() noexcept;

    void createControls();
    /// Sizes the window and everything in it for a resolution; `corner` is where it stands, nullptr for the
    /// middle of the screen.
    void layOut(int dpi, const POINT* corner);
    void paint();
    /// True when the pointer over the window is the plug-in's, over a disabled one too.
    bool setCursor(WPARAM wParam, LPARAM lParam) const;
    void showNow();
    /// Puts the keyboard on the active control; where there is none, on the window, so that its keys arrive.
    void restoreFocus();
    /// nullptr when no control has the focus.
    ControlView* activeView() const;
    void postSettle();

    // Keys and clicks (window_keys.cpp).
    bool keyDown(WPARAM key);
    bool mnemonic(wchar_t character);
    bool wantsCharacters() const;
    bool keyUp(WPARAM key);
    bool buttonDown(const MSG& message);
    void moveByTab(bool backwards);
    bool moveByArrow(bool backwards);
    bool focusTo(Control& control, bool byTab);
    void cancelClick();
    ControlView* clickedView(HWND clicked) const;

    WindowsDesktop& desktop_;
    Window& window_;
    std::shared_ptr<const wchar_t> class_;  ///< name of the class that it keeps registered
    HWND handle_ = nullptr;
    int dpi_ = 96;
    int fieldHeight_ = 0;
    Font font_;
    std::vector<std::unique_ptr<ControlView>> views_;
    std::exception_ptr failure_;
    bool stale_ = false;
    bool grids_ = false;
    bool woken_ = false;
};

}  // namespace pxtarvo::windows
