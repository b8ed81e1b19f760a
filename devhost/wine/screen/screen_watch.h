#pragma once

#include "platform/desktop.h"
#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::devhost {

/// Told of what happens on the screen.
class ScreenObserver {
  public:
    virtual ~ScreenObserver() = default;
    /// A window of the plug-in has worked off its queue and is about to wait for input.
    virtual void idle() = 0;
    /// A dialog may be open; comes every few milliseconds while one is.
    virtual void lookForDialog() = 0;
    virtual void messageAnswered(const Message& message, MessageAnswer answer) = 0;
    virtual void fileDialog(bool open) = 0;
    /// A window is about to disappear from the screen, or to go.
    virtual void windowHidden(HWND window) = 0;
};

/// Stands between the plug-in's module and the system: the calls by which it waits for input, shows messages
/// and dialogs and hides windows come here first.
class ScreenWatch {
  public:
    /// One at a time, on the apartment's thread; `plugIn` must stay loaded for good.
    ScreenWatch(HMODULE plugIn, ScreenObserver& observer);
    ScreenWatch(const ScreenWatch&) = delete;
    ScreenWatch& operator=(const ScreenWatch&) = delete;
    ~ScreenWatch();
};

/// While it lives, the observer looks for dialogs, whichever loop is running.
class DialogTicks {
  public:
    DialogTicks();
    DialogTicks(const DialogTicks&) = delete;
    DialogTicks& operator=(const DialogTicks&) = delete;
    ~DialogTicks() { KillTimer(nullptr, timer_); }

  private:
    UINT_PTR timer_;
};

}  // namespace pxtarvo::devhost
