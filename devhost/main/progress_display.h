#pragma once

// The progress of a run on standard error: what the window's label and progress bar show, as a bar that is
// written over on a terminal, as a line now and then elsewhere.

#include <chrono>

#include "platform/controls.h"

namespace pxtarvo::devhost {

class ProgressDisplay {
  public:
    ProgressDisplay();

    /// Follows this window's label and bar until end().
    void show(const Window& window);
    void end();
    /// The plug-in has let its window be painted.
    void yielded();
    /// Takes the bar off the terminal, for other output.
    void clear();

  private:
    void draw();

    bool terminal_;
    bool drawn_ = false;
    const Label* label_ = nullptr;
    const ProgressBar* bar_ = nullptr;
    unsigned yields_ = 0;
    std::chrono::steady_clock::time_point due_;
};

}  // namespace pxtarvo::devhost
