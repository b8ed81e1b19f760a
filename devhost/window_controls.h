#pragma once

// The controls of an open window by the names that the window gives them, for whoever acts as its user.

#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/window.h"

namespace pxtarvo::devhost {

/// The control, or nullptr when the window has none of this name, index and type.
template <class T>
T* findControl(const Window& window, std::string_view name, int index = notIndexed) {
    for (Control* control : window.controls()) {
        if (control->plan().name == name && control->plan().index == index) return dynamic_cast<T*>(control);
    }
    return nullptr;
}

/// As findControl, but raises std::logic_error when there is none.
template <class T>
T& control(const Window& window, std::string_view name, int index = notIndexed) {
    if (T* found = findControl<T>(window, name, index)) return *found;
    throw std::logic_error("no such control: " + std::string(name));
}

}  // namespace pxtarvo::devhost
