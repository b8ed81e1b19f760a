#include "devhost/exchange/cell_binding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

#include "platform/values/clock.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

using portable::ColumnType;

constexpr int firstServerYear = 1753;
constexpr std::size_t shownCharacters = 60;  ///< of a value, in a message

/// `text` as a message shows it: in quotes, in one line.
std::string shown(std::string_view text) {
    std::string value(firstCharacters(text, shownCharacters));
    std::ranges::replace_if(
        value, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return joined({"'", value, value.size() < text.size() ? "...'" : "'"});
}

/// Takes the parts of a date off its text.
class DateParts {
  public:
    explicit DateParts(std::string_view text) : rest_(text) {}

    bool atEnd() const { return rest_.empty(); }
    bool takeNumber(std::size_t leastDigits, std::size_t mostDigits, int& number) {
        std::size_t digits = 0;
        number = 0;
        for (; digits < std::min(mostDigits, rest_.size()) && isDigit(rest_[digits]); ++digits) {
            number = number * 10 + (rest_[digits] - '0');
        }
        rest_.remove_prefix(digits);
        return digits >= leastDigits;
    }
    /// One of these characters; '\0' where none stands there.
    char takeOne(std::string_view marks) {
        if (rest_.empty() || marks.find(rest_.front()) == marks.npos) return '\0';
        const char mark = rest_.front();
        rest_.remove_prefix(1);
        return mark;
    }
    void skipDigits() {
        while (!rest_.empty() && isDigit(rest_.front())) rest_.remove_prefix(1);
    }
    void skipBlanks() { rest_ = trimBlanks(rest_); }
    /// Whether four digits stand in front.
    bool yearInFront() const { return rest_.size() > 4 && std::ranges::all_of(rest_.substr(0, 4), isDigit); }

  private:
    std::string_view rest_;
};

bool takeDay(DateParts& parts, CalendarTime& time) {
    const bool yearFirst = parts.yearInFront();
    const auto takeYear = [&] { return parts.takeNumber(4, 4, time.year); };
    const auto takeDayOfMonth = [&] { return parts.takeNumber(1, 2, time.day); };
    if (!(yearFirst ? takeYear() : takeDayOfMonth())) return false;
    const char mark = parts.takeOne("-/.");
    if (mark == '\0' || !parts.takeNumber(1, 2, time.month)) return false;
    if (parts.takeOne({&mark, 1}) == '\0') return false;
    return yearFirst ? takeDayOfMonth() : takeYear();
}

bool takeTimeOfDay(DateParts& parts, CalendarTime& time) {
    if (parts.takeOne(" T") == '\0') return false;
    parts.skipBlanks();
    if (!parts.takeNumber(1, 2, time.hour) || parts.takeOne(":") == '\0') return false;
    if (!parts.takeNumber(2, 2, time.minute)) return false;
    if (parts.takeOne(":") != '\0') {
        if (!parts.takeNumber(2, 2, time.second)) return false;
        if (parts.takeOne(".,") != '\0') parts.skipDigits();
    }
    return true;
}

/// Reads "YYYY-MM-DD" or "DD/MM/YYYY" (also with "/", "-" or "." the other way round, day and month of one
/// digit), and behind it, after blanks or a "T", an optional "HH:MM", "HH:MM:SS" or "HH:MM:SS.FFF", whose
/// fraction is cut off. nullopt for anything else and for years before 1753, the server's first.
std::optional<CalendarTime> readCellDate(std::string_view text) {
    DateParts parts(trimBlanks(text));
    CalendarTime time{.year = 0, .month = 0, .day = 0};
    if (!takeDay(parts, time)) return std::nullopt;
    if (!parts.atEnd() && !takeTimeOfDay(parts, time)) return std::nullopt;
    if (!parts.atEnd() || time.year < firstServerYear || !isCalendarTime(time)) return std::nullopt;
    return time;
}

/// A whole number as such, any other as a double.
struct Number {
    std::optional<std::int64_t> whole;
    double real = 0;
};

std::optional<Number> readCellNumber(std::string_view text) {
    text = trimBlanks(text);
    if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
    std::string pointed;
    if (const std::size_t comma = text.find(','); comma != text.npos && text.find('.') == text.npos) {
        pointed = text;
        pointed[comma] = '.';
        text = pointed;
    }
    const char* const end = text.data() + text.size();
    std::int64_t whole = 0;
    if (const auto read = std::from_chars(text.data(), end, whole);
        read.ec == std::errc() && read.ptr == end) {
        return Number{whole, static_cast<double>(whole)};
    }
    Number number;
    const auto read = std::from_chars(text.data(), end, number.real);
    if (read.ec != std::errc() || read.ptr != end || !std::isfinite(number.real)) return std::nullopt;
    return number;
}

/// "1,00" is a whole number, too.
std::optional<std::int64_t> wholeOf(const Number& number) {
    constexpr double limit = 9007199254740992.0;  // 2^53: a double has every whole number up to here
    if (number.whole) return number.whole;
    if (std::trunc(number.real) != number.real || std::fabs(number.real) > limit) return std::nullopt;
    return static_cast<std::int64_t>(number.real);
}

void check(sqlite3_stmt* statement, int result) {
    if (result != SQLITE_OK) throw portable::providerError(sqlite3_db_handle(statement));
}

void bindText(sqlite3_stmt* statement, int parameter, std::string_view text, sqlite3_destructor_type keep) {
    check(statement, sqlite3_bind_text64(statement, parameter, text.data(), text.size(), keep, SQLITE_UTF8));
}

std::optional<std::string> bindText(sqlite3_stmt* statement, int parameter, const StoredColumn& column,
                                    std::string_view text) {
    const bool mayBeLonger = column.textSize > 0 && text.size() > column.textSize;
    if (const std::size_t characters = mayBeLonger ? characterCount(text) : 0; characters > column.textSize) {
        return joined({shown(text), " has ", std::to_string(characters), " characters, of which ",
                       std::to_string(column.textSize), " fit"});
    }
    bindText(statement, parameter, text, SQLITE_STATIC);
    return std::nullopt;
}

std::optional<std::string> bindDate(sqlite3_stmt* statement, int parameter, std::string_view text) {
    const auto date = readCellDate(text);
    if (!date) return shown(text) + " is no date of the years 1753 to 9999";
    const portable::StoredDate stored = portable::storedDate(*date);
    bindText(statement, parameter, {stored.data(), stored.size()}, SQLITE_TRANSIENT);
    return std::nullopt;
}

std::optional<std::string> bindBit(sqlite3_stmt* statement, int parameter, std::string_view text) {
    constexpr std::pair<std::string_view, int> words[] = {{"0", 0}, {"1", 1}, {"False", 0}, {"True", 1}};
    const std::string_view word = trimBlanks(text);
    const auto* const found = std::ranges::find_if(
        words, [&](const auto& known) { return equalIgnoringAsciiCase(known.first, word); });
    if (found == std::end(words)) return shown(text) + " is none of 0, 1, True and False";
    check(statement, sqlite3_bind_int(statement, parameter, found->second));
    return std::nullopt;
}

std::optional<std::string> bindWhole(sqlite3_stmt* statement, int parameter, ColumnType type,
                                     std::string_view text) {
    const auto number = readCellNumber(text);
    const auto whole = number ? wholeOf(*number) : std::nullopt;
    if (!whole) return shown(text) + (number ? " is no whole number" : " is no number");
    const portable::WholeRange range = portable::wholeRange(type);
    if (*whole < range.lowest || *whole > range.highest) {
        return joined({shown(text), " is not between ", std::to_string(range.lowest), " and ",
                       std::to_string(range.highest)});
    }
    check(statement, sqlite3_bind_int64(statement, parameter, *whole));
    return std::nullopt;
}

std::optional<std::string> bindReal(sqlite3_stmt* statement, int parameter, std::string_view text) {
    const auto number = readCellNumber(text);
    if (!number) return shown(text) + " is no number";
    check(statement, number->whole ? sqlite3_bind_int64(statement, parameter, *number->whole)
                                   : sqlite3_bind_double(statement, parameter, number->real));
    return std::nullopt;
}

}  // namespace

std::optional<std::string> bindCell(sqlite3_stmt* statement, int parameter, const StoredColumn& column,
                                    const CsvCell& cell) {
    const bool text = column.type == ColumnType::Text || column.type == ColumnType::Undeclared;
    if (cell.null || (cell.text.empty() && !text)) {
        check(statement, sqlite3_bind_null(statement, parameter));
        return std::nullopt;
    }
    if (text) return bindText(statement, parameter, column, cell.text);
    if (column.type == ColumnType::DateTime) return bindDate(statement, parameter, cell.text);
    if (column.type == ColumnType::Bit) return bindBit(statement, parameter, cell.text);
    if (portable::isWhole(column.type)) return bindWhole(statement, parameter, column.type, cell.text);
    return bindReal(statement, parameter, cell.text);
}

}  // namespace pxtarvo::devhost
