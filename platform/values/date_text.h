#pragma once

// Dates as text and text as dates.

#include <optional>
#include <string>
#include <string_view>

#include "platform/values/clock.h"
#include "platform/values/locale.h"
#include "platform/values/variant.h"

namespace pxtarvo {

/// Reads a whole text as the automation run time does; nullopt where it is no date. A text that is one number
/// alone is none. Where the year is missing it is the current one, where the day is missing the month's
/// first; a time of day alone belongs to day 0.
std::optional<Date> readDate(std::string_view text, const Locale& locale);

/// "DD/MM/YYYY H:MM:SS"; without the time of day at midnight, without the date on day 0. 6 (Overflow) outside
/// the years 100 to 9999.
std::string dateText(Date date);

/// "DD/MM/YYYY" with two-digit day and month and four-digit year.
std::string dayMonthYear(const CalendarTime& time);

}  // namespace pxtarvo
