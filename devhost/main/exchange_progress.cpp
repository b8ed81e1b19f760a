#include "devhost/main/exchange_progress.h"

#include <algorithm>
#include <iostream>
#include <string>

#include "devhost/main/exit_status.h"
#include "platform/portable/terminal.h"

namespace pxtarvo::devhost {

namespace {

using namespace std::chrono_literals;

constexpr int shareMarks = 30;
constexpr std::string_view clearLine = "\r\x1b[K";

}  // namespace

ExchangeDisplay::ExchangeDisplay(bool quiet)
    : quiet_(quiet),
      terminal_(portable::standardErrorIsTerminal()),
      interval_(terminal_ ? 100ms : 5s),
      due_(std::chrono::steady_clock::now() + interval_) {}

ExchangeWatcher ExchangeDisplay::watcher() {
    ExchangeWatcher watcher;
    watcher.remarked = [this](const std::string& remark) {
        clear();
        tell(remark);
    };
    if (!quiet_) watcher.progressed = [this](const ExchangeProgress& progress) { draw(progress); };
    return watcher;
}

void ExchangeDisplay::draw(const ExchangeProgress& progress) {
    const auto now = std::chrono::steady_clock::now();
    if (now < due_) return;
    due_ = now + interval_;
    const int percent = static_cast<int>(std::clamp(progress.share, 0.0, 1.0) * 100);
    if (terminal_) {
        const int filled = percent * shareMarks / 100;
        std::cerr << clearLine << '[' << std::string(filled, '#') << std::string(shareMarks - filled, '.')
                  << "] ";
        drawn_ = true;
    }
    std::cerr << percent << " % " << progress.file << ' ' << progress.rows << " rows";
    terminal_ ? std::cerr << std::flush : std::cerr << std::endl;
}

void ExchangeDisplay::clear() {
    if (drawn_) std::cerr << clearLine << std::flush;
    drawn_ = false;
}

}  // namespace pxtarvo::devhost
