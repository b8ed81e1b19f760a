#include "platform/windows/system/user_locale.h"

#include "platform/values/text.h"
#include "platform/windows/system/wide_text.h"

namespace pxtarvo::windows {

namespace {

/// Longer than any text of the settings that are read here.
constexpr int longestSetting = 256;

/// A setting of the user's; empty where it cannot be read.
std::u16string setting(LCTYPE type) {
    wchar_t text[longestSetting];
    const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, type, text, longestSetting);
    return length > 0 ? std::u16string(reinterpret_cast<const char16_t*>(text), length - 1u)
                      : std::u16string();
}

std::string separator(LCTYPE type) {
    return std::string(firstCharacters(toUtf8(setting(type)), 1));
}

std::string monthName(LCTYPE type) {
    std::u16string name = setting(type);
    CharLowerBuffW(reinterpret_cast<wchar_t*>(name.data()), static_cast<DWORD>(name.size()));
    if (name.ends_with(u'.')) name.pop_back();
    return toUtf8(name);
}

DateOrder dateOrder() {
    const std::u16string order = setting(LOCALE_IDATE);
    if (order == u"0") return DateOrder::MonthDayYear;
    if (order == u"2") return DateOrder::YearMonthDay;
    return DateOrder::DayMonthYear;
}

Locale readSettings() {
    Locale locale;
    locale.decimalSeparator = separator(LOCALE_SDECIMAL);
    locale.groupSeparator = separator(LOCALE_STHOUSAND);
    locale.currencySymbol = toUtf8(setting(LOCALE_SCURRENCY));
    locale.dateSeparator = separator(LOCALE_SDATE);
    locale.dateOrder = dateOrder();
    for (unsigned month = 0; month < locale.monthNames.size(); ++month) {
        locale.monthNames[month] = monthName(LOCALE_SMONTHNAME1 + month);
        locale.monthShortNames[month] = monthName(LOCALE_SABBREVMONTHNAME1 + month);
    }
    return locale;
}

}  // namespace

const Locale& userLocale() {
    static const Locale locale = readSettings();
    return locale;
}

}  // namespace pxtarvo::windows
