#include "platform/portable/clocks.h"

namespace pxtarvo::portable {

CalendarTime SystemClock::now() const {
    const std::time_t seconds = std::time(nullptr);
    if (seconds != seconds_) {
        std::tm local{};
        localtime_r(&seconds, &local);
        time_ = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                 local.tm_hour,        local.tm_min,     local.tm_sec};
        seconds_ = seconds;
    }
    return time_;
}

}  // namespace pxtarvo::portable
