#pragma once

// The user in front of the plug-in's real windows: writes into the record what appears and disappears on the
// screen, and carries a script out, either by messages posted into the windows' queue or by real keys and the
// mouse of the X display (through xdotool).
//
// It stands between the plug-in and the system: the calls by which the plug-in's module waits for input,
// shows messages and dialogs and hides windows come here first. So it knows when a window is idle, and the
// record has every event in its place among the calls.

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/record/recorder.h"
#include "devhost/user_script.h"
#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::devhost {

enum class Hands {
    None,      ///< a person works; only the record is written
    Posted,    ///< messages posted into the queue
    Keyboard,  ///< keys and mouse of the display
};

struct ScreenSession {
    UserScript script{};
    Hands hands = Hands::None;
    std::shared_ptr<Recorder> recorder{};  ///< may be empty
    std::function<void()> newContext{};    ///< what the action "context" does
    std::string pictures{};                ///< folder of the pictures, empty for none
    /// Told of every action of the script that is done in the window, right before.
    std::function<void(const Action&)> begins{};
    /// Names of the windows in the record, by their captions, and of their controls from the top to the
    /// bottom (shapes, which have no window of their own, left out).
    struct KnownWindow {
        std::string name;
        std::string caption;
        std::vector<std::string> controls;  ///< "Text1(3)"
    };
    std::vector<KnownWindow> windows{};
};

/// At most one at a time, on the apartment's thread.
class ScreenUser {
  public:
    /// `plugIn` must stay loaded for good.
    ScreenUser(HMODULE plugIn, ScreenSession session);
    ScreenUser(const ScreenUser&) = delete;
    ScreenUser& operator=(const ScreenUser&) = delete;
    ~ScreenUser();

    /// To be called with every line of the record.
    void lineRecorded(std::string_view line);
    /// Runs `dialog`, which shows the search list.
    std::optional<std::int32_t> searching(const std::function<std::optional<std::int32_t>()>& dialog);

    /// Windows of the plug-in and dialogs that are there now, hidden ones too.
    static int windowsLeft();
    /// What went wrong with the script: controls that are not there, and so on.
    const std::vector<std::string>& troubles() const noexcept { return troubles_; }
    /// As ScreenlessUser::seen().
    const std::vector<std::string>& seen() const noexcept { return seen_; }

  private:
    struct Calls;  ///< what stands in the place of the plug-in's imports
    using Step = std::function<void()>;

    void idle();
    void endStuckSession();
    void tick();
    void answerMessage(HWND box, const Action* action);
    void answerFileDialog(HWND dialog, const Action* action);
    void answerSearch(HWND window, const Action* action);
    void begin(const Action& action);
    void clickAt(HWND control);
    void typeText(HWND control, const std::string& text);
    void pressKey(HWND target, std::int16_t key, bool withRelease, Held held = Held::None);
    void closeBox(HWND window);
    void awaitInput(Deed deed);
    void choose(const Action& action);
    HWND window() const;
    /// The known window's controls with their names.
    std::vector<std::pair<HWND, std::string>> controlsOf(HWND window) const;
    HWND control(const Action& action);
    std::string lookAt(const Action& action);
    void hidden(HWND window);
    void dialogClosed();
    void xdotool(std::vector<std::string> arguments);
    bool handsBusy();
    void picture(HWND window, const std::string& name);

    ScreenSession session_;
    ScriptReader reader_;
    std::deque<Step> steps_;
    std::vector<HWND> gone_;   ///< windows whose end is in the record already
    HWND answered_ = nullptr;  ///< the dialog that has its answer
    DWORD answeredAt_ = 0;
    std::int16_t answerKey_ = 0;  ///< the key that closed it
    DWORD dialogSince_ = 0;
    bool closing_ = false;
    bool choosingFile_ = false;
    int child_ = 0;
    DWORD restUntil_ = 0;
    int pictures_ = 0;
    std::vector<std::string> troubles_;
    std::vector<std::string> seen_;
};

}  // namespace pxtarvo::devhost
