#include "devhost/user_script.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "devhost/window_controls.h"

namespace pxtarvo::devhost {

namespace {

template <class Value>
using Names = std::pair<std::string_view, Value>;

constexpr Names<Deed> deeds[] = {
    {"choose", Deed::Choose},   {"type", Deed::Type}, {"click", Deed::Click},   {"press", Deed::Press},
    {"message", Deed::Message}, {"file", Deed::File}, {"search", Deed::Search}, {"context", Deed::Context},
    {"picture", Deed::Picture}, {"look", Deed::Look}, {"close", Deed::Close}};

constexpr Names<std::int16_t> keys[] = {
    {"", 0},         {"Return", vkReturn}, {"Escape", vkEscape}, {"Tab", vkTab},      {"space", vkSpace},
    {"F1", vkF1},    {"F4", vkF4},         {"Delete", vkDelete}, {"Prior", vkPageUp}, {"Next", vkPageDown},
    {"Down", vkDown}};

constexpr Names<Held> heldKeys[] = {{"", Held::None}, {"shift", Held::Shift}, {"alt", Held::Alt}};

constexpr Names<MessageAnswer> answers[] = {
    {"ok", MessageAnswer::Ok}, {"yes", MessageAnswer::Yes}, {"no", MessageAnswer::No}};

template <class Value, std::size_t count>
Value named(const Names<Value> (&names)[count], const std::string& name) {
    const auto found = std::ranges::find(names, name, &Names<Value>::first);
    if (found == std::end(names)) throw std::runtime_error("'" + name + "' is not known");
    return found->second;
}

int whole(const nlohmann::json& json, const char* name, int otherwise) {
    constexpr double limit = 1e9;
    const double number = json.value(name, static_cast<double>(otherwise));
    if (!(std::abs(number) <= limit) || number != std::trunc(number)) {
        throw std::runtime_error(std::string(name) + " is no whole number");
    }
    return static_cast<int>(number);
}

Action readAction(const std::string& line) {
    const auto json = nlohmann::json::parse(line);
    Action action;
    action.deed = named(deeds, json.at("do"));
    action.control = json.value("control", "");
    action.index = whole(json, "index", notIndexed);
    action.text = json.value("text", "");
    action.key = named(keys, json.value("key", "Return"));
    action.held = named(heldKeys, json.value("with", ""));
    action.answer = named(answers, json.value("answer", "ok"));
    action.row = whole(json, "row", -1);
    action.after = json.value("after", "");
    action.count = whole(json, "count", 1);
    return action;
}

std::string lookAt(Window& window, const Action& action) {
    if (action.control.empty()) return window.activeControl() ? window.activeControl()->fullName() : "";
    const auto& box = control<TextBox>(window, action.control, action.index);
    return box.fullName() + "=" + box.text();
}

bool answersSomething(Deed deed) {
    return deed == Deed::Message || deed == Deed::File || deed == Deed::Search;
}

}  // namespace

UserScript readScript(std::istream& text) {
    UserScript script;
    int number = 0;
    for (std::string line; std::getline(text, line);) {
        ++number;
        if (line.empty()) continue;
        try {
            script.push_back(readAction(line));
        } catch (const std::exception& error) {
            throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
        }
    }
    return script;
}

std::string keyName(std::int16_t key) {
    const auto found = std::ranges::find(keys, key, &Names<std::int16_t>::second);
    if (found != std::end(keys)) return std::string(found->first);
    return {static_cast<char>(key >= 'A' && key <= 'Z' ? key - 'A' + 'a' : key)};
}

ScriptReader::ScriptReader(const UserScript& script) : script_(script) {
    for (const Action& action : script_) {
        if (action.after.empty()) {
            inTurn_.push_back(&action);
        } else {
            waiting_.push_back({&action});
        }
    }
}

const Action* ScriptReader::take(Deed deed) {
    if (inTurn_.empty() || inTurn_.front()->deed != deed) return nullptr;
    const Action* action = inTurn_.front();
    inTurn_.pop_front();
    return action;
}

const Action* ScriptReader::takeInWindow() {
    // An answer to what never appeared is passed over.
    while (!inTurn_.empty() && answersSomething(inTurn_.front()->deed)) inTurn_.pop_front();
    return inTurn_.empty() ? nullptr : take(inTurn_.front()->deed);
}

std::vector<const Action*> ScriptReader::setOffBy(std::string_view line) {
    std::vector<const Action*> due;
    for (Waiting& waiting : waiting_) {
        if (line.find(waiting.action->after) == std::string_view::npos) continue;
        if (++waiting.seen == waiting.action->count) due.push_back(waiting.action);
    }
    return due;
}

ScreenlessUser::ScreenlessUser(DevHost& host, const UserScript& script) : host_(host), reader_(script) {
    DevUser& user = host.user();
    for (const Action& action : script) {
        if (action.held != Held::None) throw std::runtime_error("held keys need a keyboard");
        if (action.deed == Deed::Message) {
            user.replies.push_back({action.answer, action.key});
        } else if (action.deed == Deed::File) {
            user.files.push_back(action.text.empty() ? std::nullopt : std::optional(action.text));
        } else if (action.deed == Deed::Search) {
            user.choices.emplace_back(std::monostate{});
            if (action.row >= 0) user.choices.back() = action.row;
        }
    }
    user.onWindowShown = [this](Window& window) {
        Window* const below = std::exchange(window_, &window);
        while (!window.unloaded()) {
            const Action* action = reader_.takeInWindow();
            if (!action) break;
            perform(window, *action);
        }
        window_ = below;
    };
    user.onYielded = [this] {
        for (const Action* action : std::exchange(due_, {})) perform(*window_, *action);
    };
}

void ScreenlessUser::lineRecorded(std::string_view line) {
    for (const Action* action : reader_.setOffBy(line)) due_.push_back(action);
}

void ScreenlessUser::perform(Window& window, const Action& action) {
    portable::SimulatedDesktop& desktop = host_.desktop();
    if (begins) begins(action);
    switch (action.deed) {
        case Deed::Choose:
            desktop.choose(control<ComboBox>(window, action.control), action.text);
            return;
        case Deed::Type:
            desktop.type(control<TextBox>(window, action.control, action.index), action.text);
            return;
        case Deed::Click:
            desktop.click(control<Control>(window, action.control, action.index));
            return;
        case Deed::Press:
            desktop.press(action.key);
            return;
        case Deed::Context:
            host_.handOverNewContext();
            return;
        case Deed::Look:
            seen_.push_back(lookAt(window, action));
            return;
        case Deed::Close:
            desktop.close(window);
            return;
        case Deed::Message:
        case Deed::File:
        case Deed::Search:
        case Deed::Picture:
            return;
    }
}

}  // namespace pxtarvo::devhost
