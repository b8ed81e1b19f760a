#include "platform/portable/screenless/simulated_desktop.h"

#include <algorithm>
#include <stdexcept>

#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

/// Takes a window off the desktop however its showing ends.
class Shown {
  public:
    Shown(std::vector<Window*>& windows, Window& window) : windows_(windows) { windows_.push_back(&window); }
    Shown(const Shown&) = delete;
    ~Shown() { windows_.pop_back(); }

  private:
    std::vector<Window*>& windows_;
};

}  // namespace

void SimulatedDesktop::showModal(Window& window) {
    window.load();
    const Shown shown(windows_, window);
    user_.windowShown(window);
    window.Unload();
}

MessageAnswer SimulatedDesktop::showMessage(const Message& message) {
    dialogOpens();
    if (Window* window = activeWindow()) window->settleFocus();
    const Reply reply = user_.reply(message);
    if (reply.key != 0) pendingReleases_.push_back(reply.key);
    return reply.answer;
}

void SimulatedDesktop::dialogOpens() {
    pendingKeys_.clear();
    pendingReleases_.clear();
}

bool SimulatedDesktop::getOpenFileName(OpenFileName& record) {
    dialogOpens();
    const std::optional<std::string> path = user_.chooseFile(record);
    pendingReleases_.push_back(path ? vkReturn : vkEscape);
    if (!path || toWindows1252(*path).size() >= record.nMaxFile) return false;
    record.lpstrFile = *path + '\0';
    return true;
}

void SimulatedDesktop::doEvents() {
    workOffKeys();
    user_.yielded();
}

void SimulatedDesktop::workOffKeys() {
    if (Window* window = activeWindow()) window->settleFocus();
    while (!pendingReleases_.empty()) {
        const std::int16_t key = pendingReleases_.front();
        pendingReleases_.pop_front();
        release(key);
    }
    while (!pendingKeys_.empty()) {
        const std::int16_t key = pendingKeys_.front();
        pendingKeys_.pop_front();
        press(key);
    }
}

void SimulatedDesktop::sendKeys(std::string_view keys, bool wait) {
    if (keys != "\t" && keys != "{TAB}") throw RuntimeError(ErrorNumber::InvalidProcedureCall);
    pendingKeys_.push_back(vkTab);
    if (wait) workOffKeys();
}

void SimulatedDesktop::requireReachable(const Control& control) const {
    const Window& window = control.window();
    if (activeWindow() != &window || !window.takesInput() || !control.visible() || !control.enabled()) {
        throw std::logic_error("no user can reach " + control.fullName());
    }
}

bool SimulatedDesktop::focus(Control& control) {
    workOffKeys();
    if (!control.takesFocus()) return true;
    control.window().focusOn(control);
    return !control.window().settleFocus();
}

void SimulatedDesktop::release(std::int16_t key) {
    Window* const window = activeWindow();
    if (window && window->takesInput()) window->keyUp(key);
}

bool SimulatedDesktop::click(Control& control) {
    requireReachable(control);
    if (!focus(control)) return false;
    if (auto* button = dynamic_cast<PushButton*>(&control)) {
        control.window().handle(button->onClick);
    } else if (auto* option = dynamic_cast<OptionButton*>(&control)) {
        option->setValue(true);
        control.window().handle(option->onClick);
    } else if (auto* check = dynamic_cast<CheckBox*>(&control)) {
        check->setValue(!check->value());
        control.window().handle(check->onClick);
    }
    workOffKeys();
    return true;
}

void SimulatedDesktop::choose(ComboBox& combo, std::string_view item) {
    requireReachable(combo);
    if (!focus(combo)) return;
    const auto found = std::ranges::find(combo.items(), item);
    if (found == combo.items().end()) throw std::logic_error("no such item in " + combo.fullName());
    combo.setListIndex(static_cast<int>(found - combo.items().begin()));
}

void SimulatedDesktop::chooseRow(DataGrid& grid, std::int32_t position) {
    requireReachable(grid);
    if (focus(grid)) grid.userRow(position);
}

void SimulatedDesktop::typeCharacter(TextBox& box, std::string_view character, bool& replacing) {
    const std::string ansi = toWindows1252(character);
    std::int16_t KeyAscii = static_cast<unsigned char>(ansi.front());
    const std::int16_t pressed = KeyAscii;
    if (box.onKeyPress) box.window().handle([&] { box.onKeyPress(KeyAscii); });
    if (KeyAscii == 0) return;
    const char byte = static_cast<char>(KeyAscii);
    const std::string typed = KeyAscii == pressed ? std::string(character) : fromWindows1252({&byte, 1});
    std::string text = std::exchange(replacing, false) ? std::string() : box.text();
    const auto limit = static_cast<std::size_t>(box.plan().maxLength);
    if (limit != 0 && characterCount(text) >= limit) return;
    box.userText(text + typed);
}

void SimulatedDesktop::type(TextBox& box, std::string_view text) {
    requireReachable(box);
    if (!focus(box)) return;
    if (text.empty()) {
        box.userText("");
        release(vkDelete);
        return;
    }
    bool replacing = true;
    while (!text.empty()) {
        const std::string_view character = firstCharacters(text, 1);
        typeCharacter(box, character, replacing);
        release(keyOf(static_cast<unsigned char>(character.front())));
        text.remove_prefix(character.size());
    }
}

void SimulatedDesktop::press(std::int16_t key) {
    Window* window = activeWindow();
    if (!window || window->unloaded()) return;
    workOffKeys();
    if (!window->takesInput()) return;
    if (key == vkTab) {
        if (Control* const next = window->nextTabStop(window->activeControl())) window->focusOn(*next);
    }
    const unsigned messages = messagesShown();
    window->settleFocus();
    if (messages == messagesShown()) release(key);  // else a message box took the release
    if (key == vkSpace) {
        auto* button = dynamic_cast<PushButton*>(window->activeControl());
        if (button && button->takesFocus()) window->handle(button->onClick);
    }
    workOffKeys();
}

}  // namespace pxtarvo::portable
