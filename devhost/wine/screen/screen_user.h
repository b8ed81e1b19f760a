#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/record/recorder.h"
#include "devhost/user_script.h"
#include "devhost/wine/screen/dialog_answers.h"
#include "devhost/wine/screen/known_windows.h"
#include "devhost/wine/screen/screen_watch.h"
#include "devhost/wine/screen/user_hands.h"
#include "devhost/wine/screen/window_pictures.h"

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
    std::vector<KnownWindow> windows{};
};

/// The user in front of the plug-in's real windows: carries a script out, and writes into the record what
/// appears and disappears on the screen, each event in its place among the calls. At most one at a time, on
/// the apartment's thread.
class ScreenUser : private ScreenObserver {
  public:
    /// `plugIn` must stay loaded for good.
    ScreenUser(HMODULE plugIn, ScreenSession session);
    ScreenUser(const ScreenUser&) = delete;
    ScreenUser& operator=(const ScreenUser&) = delete;
    ~ScreenUser() override;

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
    using Step = std::function<void()>;

    void idle() override;
    void lookForDialog() override;
    void messageAnswered(const Message& message, MessageAnswer answer) override;
    void fileDialog(bool open) override;
    void windowHidden(HWND window) override;

    bool busy();
    void endStuckSession();
    void begin(const Action& action);
    void choose(const Action& action);
    HWND control(const Action& action);
    std::string lookAt(const Action& action);

    std::vector<std::string> troubles_;
    std::vector<std::string> seen_;
    ScreenSession session_;
    KnownWindows known_;
    ScriptReader reader_;
    WindowPictures pictures_;
    std::unique_ptr<UserHands> hands_;      ///< none while a person works
    std::optional<DialogAnswers> dialogs_;  ///< where there are hands
    ScreenWatch watch_;
    std::deque<Step> steps_;
    std::vector<HWND> gone_;  ///< windows whose end is in the record already
    bool closing_ = false;
    DWORD restUntil_ = 0;
};

}  // namespace pxtarvo::devhost
