#include "platform/values/clock.h"

#include <chrono>
#include <cmath>

#include "platform/values/runtime_error.h"

namespace pxtarvo {

namespace {

using std::chrono::day;
using std::chrono::days;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

/// Day 0 of Date.
constexpr sys_days dayZero = year(1899) / 12 / 30;
constexpr int firstDay = (sys_days(year(100) / 1 / 1) - dayZero).count();
constexpr int lastDay = (sys_days(year(9999) / 12 / 31) - dayZero).count();
constexpr int secondsPerDay = 24 * 60 * 60;

bool within(int value, int first, int last) {
    return value >= first && value <= last;
}

}  // namespace

CalendarTime toCalendar(Date date) {
    // Beyond the last day's start there is still its time of day, before the first one's likewise.
    if (!(date.days > firstDay - 1 && date.days < lastDay + 1)) throw RuntimeError(ErrorNumber::Overflow);
    const double wholeDays = std::trunc(date.days);
    int dayNumber = static_cast<int>(wholeDays);
    int seconds = static_cast<int>(std::floor(std::fabs(date.days - wholeDays) * secondsPerDay + 0.5));
    if (seconds == secondsPerDay) {
        seconds = 0;
        if (++dayNumber > lastDay) throw RuntimeError(ErrorNumber::Overflow);
    }
    const year_month_day calendar(dayZero + days(dayNumber));
    return {.year = static_cast<int>(calendar.year()),
            .month = static_cast<int>(static_cast<unsigned>(calendar.month())),
            .day = static_cast<int>(static_cast<unsigned>(calendar.day())),
            .hour = seconds / 3600,
            .minute = seconds / 60 % 60,
            .second = seconds % 60};
}

Date toDate(const CalendarTime& time) {
    const sys_days calendar = year(time.year) / time.month / time.day;
    const double dayNumber = static_cast<double>((calendar - dayZero).count());
    const double timeOfDay = (time.hour * 3600 + time.minute * 60 + time.second) / double(secondsPerDay);
    return {dayNumber < 0 ? dayNumber - timeOfDay : dayNumber + timeOfDay};
}

bool isCalendarTime(const CalendarTime& time) {
    return within(time.year, 100, 9999) && within(time.month, 1, 12) && within(time.day, 1, 31) &&
           year_month_day(year(time.year) / time.month / time.day).ok() && within(time.hour, 0, 23) &&
           within(time.minute, 0, 59) && within(time.second, 0, 59);
}

}  // namespace pxtarvo
