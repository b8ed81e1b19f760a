#pragma once

#include "platform/values/variant.h"

namespace pxtarvo {

/// A local calendar date and time of day, to the second.
struct CalendarTime {
    int year = 1899;  ///< 100 to 9999
    int month = 12;   ///< 1 to 12
    int day = 30;     ///< 1 to 31
    int hour = 0;     ///< 0 to 23
    int minute = 0;   ///< 0 to 59
    int second = 0;   ///< 0 to 59
    friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

/// Rounded to the nearest second, which may carry over midnight. 6 (Overflow) outside the years 100 to 9999.
CalendarTime toCalendar(Date date);
/// The members must be in their ranges.
Date toDate(const CalendarTime& time);
/// Whether the members name a real day and time of the years 100 to 9999.
bool isCalendarTime(const CalendarTime& time);

/// Where the current date and time come from.
class Clock {
  public:
    virtual ~Clock() = default;
    virtual CalendarTime now() const = 0;
};

}  // namespace pxtarvo
