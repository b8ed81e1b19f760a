#pragma once

// Progress on standard error: a line that is written over on a terminal, with a bar; a line every few seconds
// elsewhere.

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/controls.h"

namespace pxtarvo::devhost {

class ProgressLine {
  public:
    ProgressLine();
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Whether it is time to show how far things have come.
    bool due() const { return Clock::now() >= due_; }
    /// `percent` of everything, which only the bar tells; nothing where that is not known.
    void show(std::optional<int> percent, std::string_view text);
    /// Takes the line off the terminal, for other output.
    void clear();

  private:
    using Clock = std::chrono::steady_clock;

    bool terminal_;
    bool drawn_ = false;
    Clock::duration interval_;
    Clock::time_point due_;
};

/// The progress of a run: rows, rows per second and the time left.
class RunProgress {
  public:
    /// Follows the row that this window's label names. `rows` is how many there will be, 0 where that is not
    /// known. Both must live as long.
    RunProgress(const Window& window, const std::int32_t& rows);
    /// The plug-in has let its window be painted.
    void yielded();
    void clear() { line_.clear(); }

  private:
    ProgressLine line_;
    const Label* label_;
    const std::int32_t& rows_;
    unsigned yields_ = 0;
    std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
};

}  // namespace pxtarvo::devhost
