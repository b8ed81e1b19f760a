#pragma once

#include "platform/values/clock.h"

namespace pxtarvo::windows {

/// The machine's local date and time.
class SystemClock : public Clock {
  public:
    CalendarTime now() const override;
};

}  // namespace pxtarvo::windows
