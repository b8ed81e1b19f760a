#include "platform/window.h"

#include <new>

#include "platform/platform.h"

namespace pxtarvo {

Window::Window(Platform& platform, const WindowPlan& plan)
    : platform_(platform), plan_(plan), caption_(plan.caption) {}

Window::~Window() = default;

Control* Window::nextTabStop(const Control* from, bool backwards) const {
    constexpr int round = 1 << 16;  // more than any place in the order
    const int here = from ? from->plan().tabIndex : noTabStop;
    Control* next = nullptr;
    int nearest = 2 * round;
    for (Control* control : controls_) {
        const int there = control->plan().tabIndex;
        if (there == noTabStop || !control->takesFocus()) continue;
        const auto* option = dynamic_cast<const OptionButton*>(control);
        if (option && !option->value()) continue;  // a group is entered at its chosen button
        const int steps = backwards ? here - there : there - here;
        const int distance = steps > 0 ? steps : steps + round;
        if (distance >= nearest) continue;
        nearest = distance;
        next = control;
    }
    return next;
}

void Window::setCaption(std::string_view caption) {
    caption_ = caption;
    if (observer_) observer_->windowChanged();
}

void Window::setEnabled(bool enabled) {
    enabled_ = enabled;
    if (observer_) observer_->windowChanged();
}

void Window::load() {
    Form_Load();
    active_ = reported_ = nextTabStop(nullptr);
}

void Window::Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    platform_.desktop().unloaded(*this);
}

void Window::handle(const std::function<void()>& handler) {
    if (unloaded_ || !handler) return;
    ++running_;
    const auto ended = std::unique_ptr<int, void (*)(int*)>(&running_, [](int* running) { --*running; });
    try {
        handler();
    } catch (const RuntimeError& error) {
        platform_.desktop().reportError(error);
    } catch (const std::bad_alloc&) {
        platform_.desktop().reportError(RuntimeError(ErrorNumber::OutOfMemory));
    }
}

void Window::keyUp(std::int16_t KeyCode, std::int16_t Shift) {
    if (!onKeyUp) return;
    const auto handler = [&] { onKeyUp(KeyCode, Shift); };
    handle(std::cref(handler));  // a copy would need memory before handle() can report that there is none
}

void Window::focusOn(Control& control) {
    if (unloaded_ || active_ == &control) return;
    active_ = &control;
    ++focusMoves_;
}

void Window::passFocusOn(const Control& control) {
    if (active_ != &control || control.takesFocus()) return;
    if (Control* const next = nextTabStop(&control)) return next->setFocus();
    active_ = nullptr;
    ++focusMoves_;
    if (observer_) observer_->focusMoved();
}

bool Window::settleFocus() {
    if (settling_) return false;
    settling_ = true;
    bool disturbed = false;
    while (!unloaded_ && reported_ != active_) {
        if (reported_) {
            const Control& left = *std::exchange(reported_, nullptr);
            const unsigned messages = platform_.desktop().messagesShown();
            const unsigned moves = focusMoves_;
            handle(left.onLostFocus);
            disturbed |= messages != platform_.desktop().messagesShown() || moves != focusMoves_;
        } else {
            reported_ = active_;
            handle(active_->onGotFocus);
        }
    }
    settling_ = false;
    return disturbed;
}

}  // namespace pxtarvo
