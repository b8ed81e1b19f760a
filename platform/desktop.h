#pragma once

// The user's screen: modal windows, message boxes, the open-file dialog, the message loop, simulated keys and
// the mouse pointer. One body shows them, the other (portable) asks a simulated user.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/values/runtime_error.h"

namespace pxtarvo {

class Window;

/// The default title of every message box and of the run-time error report.
inline constexpr std::string_view applicationTitle = "PXTarvo";

enum class MessageButtons { Ok, YesNo };
enum class MessageIcon { None, Information, Warning, Critical, Question };
enum class MessageAnswer { Ok, Yes, No };

struct Message {
    std::string text;
    std::string title = std::string(applicationTitle);
    MessageButtons buttons = MessageButtons::Ok;
    MessageIcon icon = MessageIcon::None;
    /// Only for YesNo: whether No is the button that Enter presses.
    bool defaultsToNo = false;
};

/// The open-file record of the common dialogs (OPENFILENAME); members that are not here are zero or null.
struct OpenFileName {
    std::string lpstrFilter;     ///< handed over unchanged; a buffer of zeros follows it
    std::string lpstrFile;       ///< in: the buffer's content; out: what the dialog left in it
    std::uint32_t nMaxFile = 0;  ///< the buffer's size in bytes
    std::string lpstrFileTitle;
    std::uint32_t nMaxFileTitle = 0;
    std::string lpstrInitialDir;
    std::string lpstrTitle;
};

/// Shapes of the mouse pointer, in the codes of the language's Screen object.
enum class PointerShape { Default = 0, ArrowHourglass = 13 };

class Desktop {
  public:
    Desktop();
    virtual ~Desktop() = default;

    /// Loads `window`, shows it with no owner and returns when it has been unloaded and its last handler has
    /// returned. An error of its loading leaves here as it is, and the window was never shown.
    virtual void showModal(Window& window) = 0;

    MessageAnswer messageBox(const Message& message);
    /// How many messages have been shown so far, the error reports included.
    unsigned messagesShown() const noexcept { return messagesShown_; }
    /// The platform's standard report of an error that no handler caught.
    void reportError(const RuntimeError& error);

    /// Shows the open-file dialog; false when it was cancelled or failed. Raises nothing.
    virtual bool getOpenFileName(OpenFileName& record) = 0;

    /// Lets the message loop work off what is pending.
    virtual void doEvents() = 0;
    /// Types `keys` ("\t" or "{TAB}") into the active window; with `wait` they are worked off before it
    /// returns.
    virtual void sendKeys(std::string_view keys, bool wait) = 0;

    virtual void pointer(PointerShape shape) = 0;
    virtual PointerShape pointer() const = 0;

    /// Called by a window that has just been unloaded, once.
    virtual void unloaded(Window& window) = 0;

  protected:
    /// Called again where memory ran out in it.
    virtual MessageAnswer showMessage(const Message& message) = 0;

  private:
    const Message outOfMemory_;  ///< the report, made while there was memory
    unsigned messagesShown_ = 0;
};

}  // namespace pxtarvo
