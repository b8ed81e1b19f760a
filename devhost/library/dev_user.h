#pragma once

// The user of the development host. It answers every message box with Enter, keeps what it was shown and
// writes it into the record; what else it does is given by the command or test that uses it.

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "devhost/record/recorder.h"
#include "host/host_field_helper.h"
#include "platform/database.h"
#include "platform/portable/screenless/simulated_user.h"

namespace pxtarvo::devhost {

/// What the user does with a search list: nothing (closes it), takes the row at a 0-based position, or types
/// the beginning of a text of the searched column and takes the first row that has it, whatever its case.
using SearchChoice = std::variant<std::monostate, std::int32_t, std::string>;

/// A message box that the user has read.
struct ShownMessage {
    Message message;
    MessageAnswer answer = MessageAnswer::Ok;
};

class DevUser : public portable::SimulatedUser {
  public:
    explicit DevUser(std::shared_ptr<Recorder> recorder = nullptr) : recorder_(std::move(recorder)) {}

    // What to do. Each may be left empty.

    /// A window is open and idle; it is closed afterwards.
    std::function<void(Window&)> onWindowShown;
    /// The plug-in has let the message loop run.
    std::function<void()> onYielded;
    /// A message box is open, its answer already decided.
    std::function<void(const ShownMessage&)> onMessage;
    /// Asked when no prepared file is left; without it the dialog is cancelled.
    std::function<std::optional<std::string>(const OpenFileName&)> onChooseFile;
    /// A search list opens.
    std::function<void()> onSearchOpens;
    /// Asked when no prepared choice is left for the position of a row; without it nothing is chosen.
    std::function<std::optional<std::int32_t>(const Busqueda&, Recordset& rows)> onSearch;

    /// The answer to every question for which no reply is prepared; unset presses the default button.
    std::optional<MessageAnswer> yesNo;
    /// Used one a message box, OK ones included, before the standing answer; Ok to a question presses its
    /// default button.
    std::deque<portable::Reply> replies;
    std::deque<std::optional<std::string>> files;
    std::deque<SearchChoice> choices;

    /// In the order in which they were shown.
    const std::vector<ShownMessage>& messages() const noexcept { return messages_; }
    /// Whether the last message shown is this text; false when there was none.
    bool lastMessageIs(std::string_view text) const;

    /// The choice for an open search list: 0-based position of a row, or nothing.
    std::optional<std::int32_t> choose(const Busqueda& busqueda, Recordset& rows);

    void windowShown(Window& window) override;
    portable::Reply reply(const Message& message) override;
    std::optional<std::string> chooseFile(const OpenFileName& record) override;
    void yielded() override;
    void windowUnloaded(Window& window) override;

  private:
    std::shared_ptr<Recorder> recorder_;
    std::vector<ShownMessage> messages_;
};

}  // namespace pxtarvo::devhost
