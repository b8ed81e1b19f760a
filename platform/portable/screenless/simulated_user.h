#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/desktop.h"
#include "platform/keys.h"
#include "platform/window.h"

namespace pxtarvo::portable {

/// How a message box was closed. The release of the key reaches the window below.
struct Reply {
    MessageAnswer answer = MessageAnswer::Ok;
    std::int16_t key = vkReturn;  ///< 0 for the mouse
};

/// The user in front of a desktop without a screen: acts when a window appears, answers what is asked.
class SimulatedUser {
  public:
    virtual ~SimulatedUser() = default;
    /// The window is open and idle. Whatever the user does happens in here, through the desktop's members; a
    /// window still open at its end is closed.
    virtual void windowShown(Window& window) = 0;
    virtual Reply reply(const Message& message) = 0;
    /// The path chosen in the open-file dialog; nothing when it is cancelled.
    virtual std::optional<std::string> chooseFile(const OpenFileName& record) = 0;
    /// The plug-in has just let the message loop run: the moment for acting in the middle of a run.
    virtual void yielded() {}
    virtual void windowUnloaded(Window&) {}
};

}  // namespace pxtarvo::portable
