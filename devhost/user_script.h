#pragma once

// What a user of the import window does, written down: the same script is carried out in real windows and in
// windows without a screen.
//
// As a text, one JSON object a line:
//   {"do":"choose","control":"Combo1","text":"2007"}       takes an item of a drop-down list
//   {"do":"type","control":"Text1","index":1,"text":"24"}  types over what the field holds
//   {"do":"click","control":"XPButton1"}
//   {"do":"press","key":"Escape"}                          in the window: a key, with its release
//   {"do":"press","key":"Tab","with":"shift"}              the same with another one held down, by real keys
//   {"do":"message","key":"Escape","answer":"no"}          for the next message; key "" is the mouse
//   {"do":"file","text":"C:\\LISTA.MDB"}                   for the next file dialog; "" cancels it, by Esc
//   or, with
//                                                          "answer":"no", by its button and the key
//   {"do":"search","row":0}                                for the next search list; -1 chooses nothing
//   {"do":"context"}                                       the host hands over another context
//   {"do":"picture","text":"window"}                       keeps a picture under this name
//   {"do":"look","control":"Text1","index":1}              notes the control's text; without one, the focus
//   {"do":"close"}                                         by the window's close box
// A message that no line answers gets Enter; what is still open at the end is closed. A line with
// "after":"TEXT","count":3 is not done in its turn, but at the moment that the third line with TEXT in it was
// recorded.

#include <cstdint>
#include <deque>
#include <functional>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/dev_host.h"

namespace pxtarvo::devhost {

enum class Deed { Choose, Type, Click, Press, Message, File, Search, Context, Picture, Look, Close };

enum class Held { None, Shift, Alt };

struct Action {
    Deed deed = Deed::Click;
    std::string control{};
    int index = notIndexed;
    std::string text{};
    std::int16_t key = vkReturn;  ///< virtual key code, 0 for the mouse
    Held held = Held::None;
    MessageAnswer answer = MessageAnswer::Ok;
    std::int32_t row = -1;
    std::string after{};
    int count = 1;
};

using UserScript = std::vector<Action>;

/// Raises std::runtime_error with the line's number for a line that says nothing that can be done.
UserScript readScript(std::istream& text);

/// What a script calls a key; letters and digits are their own names.
std::string keyName(std::int16_t key);

/// Gives out the actions of a script: those in turn, and those that a line of the record sets off.
class ScriptReader {
  public:
    explicit ScriptReader(const UserScript& script);

    /// Nothing left that is done in its turn.
    bool finished() const noexcept { return inTurn_.empty(); }
    /// The next action when it is of this kind, taken off the script.
    const Action* take(Deed deed);
    /// The next action that is done in the window itself.
    const Action* takeInWindow();
    /// The actions that this line of the record sets off.
    std::vector<const Action*> setOffBy(std::string_view line);

  private:
    struct Waiting {
        const Action* action;
        int seen = 0;
    };
    UserScript script_;
    std::deque<const Action*> inTurn_;
    std::vector<Waiting> waiting_;
};

/// Carries the script out in the windows without a screen of `host`: call lineRecorded() with every line of
/// its record. Must outlive the runs.
class ScreenlessUser {
  public:
    /// Raises std::runtime_error for what only real keys can do.
    ScreenlessUser(DevHost& host, const UserScript& script);
    void lineRecorded(std::string_view line);

    /// Told of every action that is done in the window, right before.
    std::function<void(const Action&)> begins;
    /// What the actions "look" saw: "Text1(1)=24", or the name of the control with the focus.
    const std::vector<std::string>& seen() const noexcept { return seen_; }

  private:
    void perform(Window& window, const Action& action);

    DevHost& host_;
    ScriptReader reader_;
    Window* window_ = nullptr;
    std::vector<const Action*> due_;
    std::vector<std::string> seen_;
};

}  // namespace pxtarvo::devhost
