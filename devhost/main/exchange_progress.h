#pragma once

#include <chrono>

#include "devhost/exchange/exchange_watcher.h"

namespace pxtarvo::devhost {

/// What loading and saving tell, on standard error: remarks as lines, the progress as a bar that is written
/// over on a terminal, as a line now and then elsewhere. Without progress where it is to be quiet.
class ExchangeDisplay {
  public:
    explicit ExchangeDisplay(bool quiet);
    ~ExchangeDisplay() { clear(); }
    ExchangeDisplay(const ExchangeDisplay&) = delete;
    ExchangeDisplay& operator=(const ExchangeDisplay&) = delete;

    /// To be used while this display is there.
    ExchangeWatcher watcher();

  private:
    void draw(const ExchangeProgress& progress);
    void clear();

    bool quiet_;
    bool terminal_;
    bool drawn_ = false;
    std::chrono::steady_clock::duration interval_;
    std::chrono::steady_clock::time_point due_;
};

}  // namespace pxtarvo::devhost
