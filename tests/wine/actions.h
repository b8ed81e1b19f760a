#pragma once

// What the user of a scenario does, one word each.

#include <string>
#include <utility>

#include "devhost/user_script.h"

namespace pxtarvo::test {

using devhost::Action;
using devhost::Deed;

inline Action key(std::int16_t key, devhost::Held held = devhost::Held::None) {
    return {.deed = Deed::Press, .key = key, .held = held};
}
inline Action click(std::string control, int index = notIndexed) {
    return {.deed = Deed::Click, .control = std::move(control), .index = index};
}
/// Into a field of the array Text1.
inline Action type(int index, std::string text) {
    return {.deed = Deed::Type, .control = "Text1", .index = index, .text = std::move(text)};
}
/// For the next message.
inline Action answer(MessageAnswer answer, std::int16_t key = vkReturn) {
    return {.deed = Deed::Message, .key = key, .answer = answer};
}
/// Of the rows of the next search; none with -1.
inline Action choose(int row) {
    return {.deed = Deed::Search, .row = row};
}
/// Once the third row is written.
inline Action inTheRun(Action action) {
    action.after = "\"table\":\"ArtPro\"";
    action.count = 3;
    return action;
}
/// Notes the text of a field of the array Text1.
inline Action look(int index) {
    return {.deed = Deed::Look, .control = "Text1", .index = index};
}
/// Notes the control that has the focus.
inline Action lookAtFocus() {
    return {.deed = Deed::Look};
}

}  // namespace pxtarvo::test
