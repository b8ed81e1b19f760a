#include "devhost/main/progress_display.h"

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

constexpr std::chrono::milliseconds timeBetweenBars = 100ms;
constexpr std::chrono::milliseconds timeBetweenLines = 5s;
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

ProgressLine::ProgressLine()
    : terminal_(portable::standardErrorIsTerminal()),
      interval_(terminal_ ? timeBetweenBars : timeBetweenLines),
      due_(Clock::now() + interval_) {}

void ProgressLine::show(std::optional<int> percent, std::string_view text) {
    due_ = Clock::now() + interval_;
    if (!terminal_) {
        std::cerr << text << std::endl;
        return;
    }
    std::cerr << eraseLine;
    if (percent) {
        const int filled = *percent * barWidth / 100;
        std::cerr << '[' << std::string(filled, '#') << std::string(barWidth - filled, '.') << "] ";
    }
    std::cerr << text << std::flush;
    drawn_ = true;
}

void ProgressLine::clear() {
    if (drawn_) std::cerr << eraseLine << std::flush;
    drawn_ = false;
}

RunProgress::RunProgress(const Window& window, const std::int32_t& rows)
    : label_(findControl<Label>(window, "Label2")), rows_(rows) {}

void RunProgress::yielded() {
    if (!label_ || ++yields_ % yieldsBetweenLooks != 0 || !line_.due()) return;
    const std::int32_t row = rowOf(label_->caption());
    if (row == 0) return;
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - started_;
    const double perSecond = row / passed.count();
    const std::string rate = std::to_string(std::lround(perSecond)) + " rows/s";
    if (rows_ < row) return line_.show({}, joined({std::to_string(row), " rows, ", rate}));
    const int percent = static_cast<int>(100.0 * row / rows_);
    line_.show(percent,
               joined({std::to_string(row), " of ", std::to_string(rows_), " rows, ", std::to_string(percent),
                       " %, ", rate, ", ", duration((rows_ - row) / perSecond), " left"}));
}

}  // namespace pxtarvo::devhost
