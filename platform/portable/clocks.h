#pragma once

#include <ctime>

#include "platform/values/clock.h"

namespace pxtarvo::portable {

/// The machine's local time.
class SystemClock : public Clock {
  public:
    CalendarTime now() const override;

  private:
    /// The last answer: asked again within its second, the clock need not work it out anew.
    mutable std::time_t seconds_ = -1;
    mutable CalendarTime time_;
};

/// A clock that stands still, for runs that must give the same result every day.
class FixedClock : public Clock {
  public:
    explicit FixedClock(const CalendarTime& time) : time_(time) {}
    CalendarTime now() const override { return time_; }

  private:
    CalendarTime time_;
};

}  // namespace pxtarvo::portable
