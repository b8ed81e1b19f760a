#include "devhost/main/progress_display.h"

#include <algorithm>
#include <iostream>
#include <string>

#include "devhost/window_controls.h"
#include "platform/portable/terminal.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

using namespace std::chrono_literals;

constexpr auto timeBetweenBars = 100ms;
constexpr auto timeBetweenLines = 5s;
constexpr unsigned yieldsBetweenLooks = 64;  // at the clock
constexpr int barWidth = 30;
constexpr std::size_t labelWidth = 45;
constexpr std::string_view eraseLine = "\r\x1b[K";

double share(const ProgressBar& bar) {
    const double range = bar.maximum() - bar.minimum();
    return range > 0 ? std::clamp((bar.value() - bar.minimum()) / range, 0.0, 1.0) : 0.0;
}

}  // namespace

ProgressDisplay::ProgressDisplay() : terminal_(portable::standardErrorIsTerminal()) {}

void ProgressDisplay::show(const Window& window) {
    label_ = findControl<Label>(window, "Label2");
    bar_ = findControl<ProgressBar>(window, "ProgressBar1");
    due_ = std::chrono::steady_clock::now() + (terminal_ ? timeBetweenBars : timeBetweenLines);
}

void ProgressDisplay::end() {
    clear();
    label_ = nullptr;
    bar_ = nullptr;
}

void ProgressDisplay::yielded() {
    if (!label_ || ++yields_ % yieldsBetweenLooks != 0) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < due_ || label_->caption().empty()) return;
    due_ = now + (terminal_ ? timeBetweenBars : timeBetweenLines);
    draw();
}

void ProgressDisplay::draw() {
    std::string line;
    if (bar_ && bar_->visible()) {
        const int percent = static_cast<int>(share(*bar_) * 100);
        if (terminal_) {
            const int filled = percent * barWidth / 100;
            line.append("[").append(filled, '#').append(barWidth - filled, '.').append("] ");
        }
        line.append(plainNumber(percent)).append(" % ");
    }
    if (!terminal_) {
        std::cerr << line << label_->caption() << std::endl;
        return;
    }
    std::cerr << eraseLine << line << firstCharacters(label_->caption(), labelWidth) << std::flush;
    drawn_ = true;
}

void ProgressDisplay::clear() {
    if (!drawn_) return;
    std::cerr << eraseLine << std::flush;
    drawn_ = false;
}

}  // namespace pxtarvo::devhost
