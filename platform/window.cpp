#include "platform/window.h"

#include <algorithm>
#include <new>

#include "platform/platform.h"

namespace pxtarvo {

Window::Window(Platform& platform, const WindowPlan& plan)
    : platform_(platform), plan_(plan), caption_(plan.caption) {}

Window::~Window() = default;

std::vector<Control*> Window::tabOrder() const {
    std::vector<Control*> order;
    for (Control* control : controls_) {
        if (control->plan().tabIndex == noTabStop || !control->takesFocus()) continue;
        const auto* option = dynamic_cast<const OptionButton*>(control);
        if (option && !option->value()) continue;  // a group is entered at its chosen button
        order.push_back(control);
    }
    std::ranges::stable_sort(order, {}, [](const Control* control) { return control->plan().tabIndex; });
    return order;
}

void Window::setCaption(std::string_view caption) {
    caption_ = caption;
    if (observer_) observer_->windowChanged();
}

void Window::setTag(std::string_view tag) {
    tag_ = tag;
}

void Window::setEnabled(bool enabled) {
    enabled_ = enabled;
    if (observer_) observer_->windowChanged();
}

void Window::load() {
    Form_Load();
    const std::vector<Control*> order = tabOrder();
    active_ = reported_ = order.empty() ? nullptr : order.front();
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
    const auto handler = [&] { Form_KeyUp(KeyCode, Shift); };
    handle(std::cref(handler));  // a copy would need memory before handle() can report that there is none
}

void Window::Form_KeyUp(std::int16_t, std::int16_t) {}

void Window::focusOn(Control& control) {
    if (unloaded_ || active_ == &control) return;
    active_ = &control;
    ++focusMoves_;
}

void Window::passFocusOn(const Control& control) {
    if (active_ != &control || control.takesFocus()) return;
    const std::vector<Control*> order = tabOrder();
    const auto next = std::ranges::find_if(
        order, [&](const Control* other) { return other->plan().tabIndex > control.plan().tabIndex; });
    if (!order.empty()) return (next == order.end() ? order.front() : *next)->setFocus();
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
