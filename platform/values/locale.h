#pragma once

// What converting between values and text takes from the user's settings. Fixed data: a body of the platform
// fills it once (Windows from the user's locale, the portable one with Spain's).

#include <array>
#include <string>

namespace pxtarvo {

enum class DateOrder { DayMonthYear, MonthDayYear, YearMonthDay };

struct Locale {
    std::string decimalSeparator;  ///< one character, UTF-8
    std::string groupSeparator;    ///< one character, UTF-8
    std::string currencySymbol;    ///< UTF-8
    std::string dateSeparator;     ///< one character, UTF-8
    DateOrder dateOrder = DateOrder::DayMonthYear;
    std::array<std::string, 12> monthNames;       ///< lower case, January first
    std::array<std::string, 12> monthShortNames;  ///< lower case, without a final point
};

/// Spanish (Spain): decimal comma, grouping point, day first.
const Locale& spanishLocale();

}  // namespace pxtarvo
