#include "devhost/main/progress_display.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>
#include <string>
#include <string_view>

#include "devhost/window_controls.h"
#include "platform/portable/terminal.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

using namespace std::chrono_literals;

constexpr auto timeBetweenBars = 100ms;
constexpr auto timeBetweenLines = 5s;
constexpr unsigned yieldsBetweenLooks = 64;  // at the clock
constexpr int barWidth = 30;
constexpr std::string_view eraseLine = "\r\x1b[K";

/// The row that the label names, which stands behind its first words; 0 for none.
std::int32_t rowOf(std::string_view caption) {
    std::int32_t row = 0;
    const std::size_t digits = caption.find_first_of("0123456789");
    if (digits != caption.npos)
        std::from_chars(caption.data() + digits, caption.data() + caption.size(), row);
    return row;
}

/// "2 min 5 s", "40 s".
std::string duration(double seconds) {
    constexpr int perMinute = 60;
    const int whole = static_cast<int>(std::ceil(seconds));
    std::string text;
    if (whole >= perMinute) text = std::to_string(whole / perMinute) + " min ";
    return text + std::to_string(whole % perMinute) + " s";
}

}  // namespace

ProgressDisplay::ProgressDisplay() : terminal_(portable::standardErrorIsTerminal()) {}

void ProgressDisplay::show(const Window& window, const std::int32_t& rows) {
    label_ = findControl<Label>(window, "Label2");
    rows_ = &rows;
    started_ = Clock::now();
    due_ = started_ + (terminal_ ? timeBetweenBars : timeBetweenLines);
}

void ProgressDisplay::end() {
    clear();
    label_ = nullptr;
}

void ProgressDisplay::yielded() {
    if (!label_ || ++yields_ % yieldsBetweenLooks != 0) return;
    const auto now = Clock::now();
    if (now < due_ || rowOf(label_->caption()) == 0) return;
    due_ = now + (terminal_ ? timeBetweenBars : timeBetweenLines);
    draw(now);
}

void ProgressDisplay::draw(Clock::time_point now) {
    const std::int32_t row = rowOf(label_->caption());
    const double perSecond = row / std::chrono::duration<double>(now - started_).count();
    const std::string rate = std::to_string(std::lround(perSecond)) + " rows/s";
    std::string line;
    if (*rows_ >= row) {
        const int percent = static_cast<int>(100.0 * row / *rows_);
        if (terminal_) {
            const int filled = percent * barWidth / 100;
            line.append("[").append(filled, '#').append(barWidth - filled, '.').append("] ");
        }
        line +=
            joined({std::to_string(row), " of ", std::to_string(*rows_), " rows, ", std::to_string(percent),
                    " %, ", rate, ", ", duration((*rows_ - row) / perSecond), " left"});
    } else {
        line += joined({std::to_string(row), " rows, ", rate});
    }
    if (!terminal_) {
        std::cerr << line << std::endl;
        return;
    }
    std::cerr << eraseLine << line << std::flush;
    drawn_ = true;
}

void ProgressDisplay::clear() {
    if (!drawn_) return;
    std::cerr << eraseLine << std::flush;
    drawn_ = false;
}

}  // namespace pxtarvo::devhost
