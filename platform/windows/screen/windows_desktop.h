#pragma once

// The desktop with a screen: real windows, message boxes, the common open-file dialog.

#include <chrono>
#include <vector>

#include "platform/desktop.h"
#include "platform/windows/system/win32.h"

namespace pxtarvo::windows {

class WindowView;

/// One for each thread that shows windows; used by that thread only.
class WindowsDesktop : public Desktop {
  public:
    /// Also rethrows, once the window is gone, what left a handler and is no run-time error. A request to
    /// quit closes the window and is put back for the host's own loop.
    void showModal(Window& window) override;
    bool getOpenFileName(OpenFileName& record) override;
    /// Works off what is pending and shows what code wrote; of the yields that follow one another with
    /// nothing in between only one in a screen's frame does, as nobody can tell the others.
    void doEvents() override;
    /// Only the Tab key; 5 for any other.
    void sendKeys(std::string_view keys, bool wait) override;
    void pointer(PointerShape shape) override;
    PointerShape pointer() const override;
    /// A run that is under way hides it at its next yield.
    void unloaded(Window&) override { wake(); }

    // For the windows.

    /// Whether nothing of ours lies over the window.
    bool uncovered(const WindowView& view) const noexcept { return top() == &view; }
    /// Sets the pointer while it is over a window; false when the control's own is to be used.
    bool showPointer() const;
    /// Makes the loop that waits look at its window's end.
    static void wake() noexcept { PostMessageW(nullptr, WM_NULL, 0, 0); }
    /// The handlers of a key's release have returned.
    void keyWorkedOff(WPARAM key) noexcept {
        if (key == VK_TAB) awaitingTab_ = false;
    }

  protected:
    MessageAnswer showMessage(const Message& message) override;

  private:
    class Shown;

    WindowView* top() const noexcept { return views_.empty() ? nullptr : views_.back(); }
    WindowView* viewAt(HWND handle) const;
    void run(WindowView& view);
    /// Takes the next message from the queue and works it off; false when there is none, or only the request
    /// to quit, which stays.
    bool workOffOne();
    void workOff(const MSG& message);
    void refresh();

    std::vector<WindowView*> views_;
    std::chrono::steady_clock::time_point yielded_{};
    bool running_ = false;  ///< nothing was worked off since the last yield: a run is under way
    bool awaitingTab_ = false;
};

}  // namespace pxtarvo::windows
