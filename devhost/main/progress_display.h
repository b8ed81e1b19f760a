#pragma once

// The progress of a run on standard error: rows, rows per second and the time left, as a bar that is written
// over on a terminal, as a line every few seconds elsewhere.

#include <chrono>
#include <cstdint>

#include "platform/controls.h"

namespace pxtarvo::devhost {

class ProgressDisplay {
  public:
    ProgressDisplay();

    /// Follows this window's label until end(). `rows`, which must live as long, is how many there will be,
    /// 0 where that is not known.
    void show(const Window& window, const std::int32_t& rows);
    void end();
    /// The plug-in has let its window be painted.
    void yielded();
    /// Takes the bar off the terminal, for other output.
    void clear();

  private:
    using Clock = std::chrono::steady_clock;

    void draw(Clock::time_point now);

    bool terminal_;
    bool drawn_ = false;
    const Label* label_ = nullptr;
    const std::int32_t* rows_ = nullptr;
    unsigned yields_ = 0;
    Clock::time_point started_;
    Clock::time_point due_;
};

}  // namespace pxtarvo::devhost
