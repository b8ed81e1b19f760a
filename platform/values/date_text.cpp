#include "platform/values/date_text.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <mutex>
#include <span>
#include <vector>

#include "platform/values/text.h"

namespace pxtarvo {

namespace {

/// Every byte of a letter outside ASCII counts.
bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c & 0x80) != 0;
}

/// Two-digit years are those from 1930 to 2029.
constexpr int lastTwoDigitYear = 29;

int currentYear() {
    static std::mutex guard;  // localtime() answers in one shared place
    const std::scoped_lock lock(guard);
    const std::time_t now = std::time(nullptr);
    return std::localtime(&now)->tm_year + 1900;
}

struct Number {
    int value = 0;
    std::size_t digits = 0;
};

enum class Part { Day, Month, Year };
using Order = std::array<Part, 3>;  ///< for two numbers the first two parts

constexpr Order dayMonthYearOrder = {Part::Day, Part::Month, Part::Year};
constexpr Order monthDayYearOrder = {Part::Month, Part::Day, Part::Year};
constexpr Order yearMonthDayOrder = {Part::Year, Part::Month, Part::Day};
constexpr Order monthYearOrder = {Part::Month, Part::Year};
constexpr Order dayYearOrder = {Part::Day, Part::Year};
constexpr Order yearDayOrder = {Part::Year, Part::Day};

/// The orders in which numbers are tried, the user's own first.
struct Orders {
    std::array<Order, 3> three;
    std::array<Order, 4> two;        ///< day and month of the current year, else month and year
    std::array<Order, 2> withMonth;  ///< two numbers beside a month's name
};

/// By DateOrder.
constexpr std::array<Orders, 3> ordersByLocale = {{
    {{dayMonthYearOrder, monthDayYearOrder, yearMonthDayOrder},
     {dayMonthYearOrder, monthDayYearOrder, monthYearOrder, yearMonthDayOrder},
     {dayYearOrder, yearDayOrder}},
    {{monthDayYearOrder, dayMonthYearOrder, yearMonthDayOrder},
     {monthDayYearOrder, dayMonthYearOrder, monthYearOrder, yearMonthDayOrder},
     {dayYearOrder, yearDayOrder}},
    {{yearMonthDayOrder, monthDayYearOrder, dayMonthYearOrder},
     {monthDayYearOrder, dayMonthYearOrder, yearMonthDayOrder, monthYearOrder},
     {yearDayOrder, dayYearOrder}},
}};

class DateReader {
  public:
    DateReader(std::string_view text, const Locale& locale) : rest_(trimBlanks(text)), locale_(locale) {}

    std::optional<Date> read() {
        if (!readPieces()) return std::nullopt;
        CalendarTime result = time_.value_or(CalendarTime{});
        if (numbers_.empty() && month_ == 0) return time_ ? std::optional(toDate(result)) : std::nullopt;
        if (!resolve(result)) return std::nullopt;
        return toDate(result);
    }

  private:
    /// What stands between two pieces.
    enum class Gap { None, Blank, Separator };

    bool readPieces() {
        while (!rest_.empty()) {
            if (afterTime_ && gap_ != Gap::Blank) return false;
            if (!(isDigit(rest_.front()) ? readNumberOrTime() : readWord())) return false;
            gap_ = readGap();
        }
        return gap_ == Gap::None;
    }

    bool readNumberOrTime() {
        const std::optional<Number> number = takeNumber();
        if (!number) return false;
        afterTime_ = rest_.starts_with(':');
        if (afterTime_) return gap_ == Gap::Blank && readTime(*number);
        numbers_.push_back(*number);
        return numbers_.size() <= 3;
    }

    std::optional<Number> takeNumber() {
        Number number;
        while (number.digits < rest_.size() && isDigit(rest_[number.digits])) {
            if (number.digits == 4) return std::nullopt;
            number.value = number.value * 10 + (rest_[number.digits++] - '0');
        }
        rest_.remove_prefix(number.digits);
        if (number.digits == 0) return std::nullopt;
        return number;
    }

    /// ":mm", ":mm:ss" after the hour, and "am" or "pm".
    bool readTime(const Number& hour) {
        if (time_ || hour.digits > 2) return false;
        CalendarTime time{.hour = hour.value};
        for (int* part : {&time.minute, &time.second}) {
            if (!rest_.starts_with(':')) break;
            rest_.remove_prefix(1);
            const std::optional<Number> number = takeNumber();
            if (!number || number->digits > 2) return false;
            *part = number->value;
        }
        if (!applyHalfOfDay(time)) return false;
        if (!isCalendarTime(time)) return false;
        time_ = time;
        return true;
    }

    bool applyHalfOfDay(CalendarTime& time) {
        const std::string_view after = rest_.substr(std::min(rest_.find_first_not_of(' '), rest_.size()));
        const std::string_view half = after.substr(0, 2);
        const bool am = equalIgnoringAsciiCase(half, "am");
        const bool pm = equalIgnoringAsciiCase(half, "pm");
        if ((!am && !pm) || (after.size() > 2 && after[2] != ' ')) return true;
        rest_ = after.substr(2);
        if (time.hour > 12) return false;
        time.hour = time.hour % 12 + (pm ? 12 : 0);
        return true;
    }

    /// A month's name, or "de" between blanks as in "25 de julio de 2006".
    bool readWord() {
        afterTime_ = false;
        const auto end = std::ranges::find_if_not(rest_, isLetter);
        const std::string_view word = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
        rest_.remove_prefix(word.size());
        const bool betweenBlanks = gap_ == Gap::Blank && rest_.starts_with(' ');
        if (betweenBlanks && !numbers_.empty() && equalIgnoringAsciiCase(word, "de")) return true;
        if (month_ != 0) return false;
        month_ = monthNamed(word);
        if (rest_.starts_with('.')) rest_.remove_prefix(1);  // of a shortened name
        return month_ != 0;
    }

    int monthNamed(std::string_view word) const {
        const auto named = [&](const std::string& name) { return equalIgnoringAsciiCase(name, word); };
        for (const auto* names : {&locale_.monthNames, &locale_.monthShortNames}) {
            const auto found = std::ranges::find_if(*names, named);
            if (found != names->end()) return static_cast<int>(found - names->begin()) + 1;
        }
        return 0;
    }

    Gap readGap() {
        const bool blank = takeBlanks();
        for (const std::string_view separator :
             {std::string_view("/"), std::string_view("-"), std::string_view("."),
              std::string_view(locale_.dateSeparator)}) {
            if (separator.empty() || !rest_.starts_with(separator)) continue;
            rest_.remove_prefix(separator.size());
            takeBlanks();
            return Gap::Separator;
        }
        return blank ? Gap::Blank : Gap::None;
    }
    bool takeBlanks() {
        const std::size_t blanks = std::min(rest_.find_first_not_of(' '), rest_.size());
        rest_.remove_prefix(blanks);
        return blanks != 0;
    }

    bool resolve(CalendarTime& result) const {
        const Orders& orders = ordersByLocale[static_cast<std::size_t>(locale_.dateOrder)];
        if (month_ == 0) {
            return numbers_.size() == 3   ? firstThatFits(orders.three, result)
                   : numbers_.size() == 2 ? firstThatFits(orders.two, result)
                                          : false;
        }
        static constexpr std::array<Order, 2> dayElseYear = {Order{Part::Day}, Order{Part::Year}};
        return numbers_.size() == 2   ? firstThatFits(orders.withMonth, result)
               : numbers_.size() == 1 ? firstThatFits(dayElseYear, result)
                                      : false;
    }

    bool firstThatFits(std::span<const Order> orders, CalendarTime& result) const {
        return std::ranges::any_of(orders, [&](const Order& order) { return fits(order, result); });
    }

    bool fits(const Order& order, CalendarTime& result) const {
        CalendarTime tried = result;
        tried.month = month_;
        tried.day = 1;
        tried.year = 0;
        for (std::size_t i = 0; i < numbers_.size(); ++i) {
            const auto [value, digits] = numbers_[i];
            if (order[i] == Part::Year) {
                tried.year = value >= 100 ? value : value + (value <= lastTwoDigitYear ? 2000 : 1900);
            } else {
                if (digits > 2) return false;
                (order[i] == Part::Day ? tried.day : tried.month) = value;
            }
        }
        if (tried.year == 0) tried.year = currentYear();
        if (!isCalendarTime(tried)) return false;
        result = tried;
        return true;
    }

    std::string_view rest_;
    const Locale& locale_;
    Gap gap_ = Gap::Blank;  ///< before the piece that is being read
    bool afterTime_ = false;
    std::vector<Number> numbers_;
    int month_ = 0;  ///< named; 0 for none
    std::optional<CalendarTime> time_;
};

void appendTwoDigits(std::string& text, int number) {
    text += static_cast<char>('0' + number / 10);
    text += static_cast<char>('0' + number % 10);
}

}  // namespace

std::optional<Date> readDate(std::string_view text, const Locale& locale) {
    return DateReader(text, locale).read();
}

std::string dayMonthYear(const CalendarTime& time) {
    std::string text;
    appendTwoDigits(text, time.day);
    text += '/';
    appendTwoDigits(text, time.month);
    text += '/';
    appendTwoDigits(text, time.year / 100);
    appendTwoDigits(text, time.year % 100);
    return text;
}

std::string dateText(Date date) {
    const CalendarTime time = toCalendar(date);
    const bool midnight = time.hour == 0 && time.minute == 0 && time.second == 0;
    const CalendarTime midnightThatDay{.year = time.year, .month = time.month, .day = time.day};
    const bool dayZero = midnightThatDay == CalendarTime{};
    std::string text;
    if (!dayZero) text = dayMonthYear(time);
    if (midnight && !dayZero) return text;
    if (!dayZero) text += ' ';
    text += std::to_string(time.hour);
    for (const int part : {time.minute, time.second}) {
        text += ':';
        appendTwoDigits(text, part);
    }
    return text;
}

}  // namespace pxtarvo
