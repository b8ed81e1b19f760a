#include "platform/portable/dialect/column_types.h"

#include <algorithm>
#include <limits>

#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

struct TypeName {
    std::string_view declared;
    ColumnType type;
};

constexpr TypeName typeNames[] = {
    {"BIT", ColumnType::Bit},
    {"TINYINT", ColumnType::TinyInt},
    {"SMALLINT", ColumnType::SmallInt},
    {"INTEGER", ColumnType::Int},
    {"INT", ColumnType::Int},
    {"FLOAT", ColumnType::Float},
    {"REAL", ColumnType::Real},
    {"MONEY", ColumnType::Money},
    {"SMALLMONEY", ColumnType::Money},
    {"DECIMAL", ColumnType::Decimal},
    {"NUMERIC", ColumnType::Decimal},
    {"VARCHAR", ColumnType::Text},
    {"NVARCHAR", ColumnType::Text},
    {"CHAR", ColumnType::Text},
    {"NCHAR", ColumnType::Text},
    {"TEXT", ColumnType::Text},
    {"NTEXT", ColumnType::Text},
    {"DATETIME", ColumnType::DateTime},
    {"SMALLDATETIME", ColumnType::DateTime},
};

/// Indexed by ColumnType.
constexpr std::string_view serverNames[] = {"sql_variant", "bit",   "tinyint", "smallint", "int",     "float",
                                            "real",        "money", "decimal", "varchar",  "datetime"};

/// Reads exactly `digits` digits at the front of `text` and removes them; false if they are not there.
bool takeNumber(std::string_view& text, int digits, int& number) {
    if (text.size() < static_cast<std::size_t>(digits)) return false;
    number = 0;
    for (const char c : text.substr(0, digits)) {
        if (c < '0' || c > '9') return false;
        number = number * 10 + (c - '0');
    }
    text.remove_prefix(digits);
    return true;
}

bool takeMark(std::string_view& text, char mark) {
    if (text.empty() || text.front() != mark) return false;
    text.remove_prefix(1);
    return true;
}

}  // namespace

ColumnDeclaration readDeclaration(std::string_view declaration) {
    const std::string_view name = declaration.substr(0, declaration.find_first_of(" ("));
    const auto* found = std::find_if(std::begin(typeNames), std::end(typeNames), [&](const TypeName& known) {
        return equalIgnoringAsciiCase(known.declared, name);
    });
    if (found == std::end(typeNames)) return {};
    ColumnDeclaration read{found->type, 0};
    const std::size_t comma = declaration.find(',');
    if (read.type == ColumnType::Decimal && comma != std::string_view::npos) {
        int scale = 0;
        for (const char c : declaration.substr(comma + 1)) {
            if (c >= '0' && c <= '9') scale = std::min(scale * 10 + (c - '0'), 28);
        }
        read.scale = static_cast<std::uint8_t>(scale);
    }
    return read;
}

std::string_view serverTypeName(ColumnType type) {
    return serverNames[static_cast<std::size_t>(type)];
}

WholeRange wholeRange(ColumnType type) {
    switch (type) {
        case ColumnType::Bit:
            return {0, 1};
        case ColumnType::TinyInt:
            return {0, std::numeric_limits<std::uint8_t>::max()};
        case ColumnType::SmallInt:
            return {std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()};
        default:
            return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    }
}

StoredDate storedDate(const CalendarTime& time) {
    StoredDate text{'0', '0', '0', '0', '-', '0', '0', '-', '0', '0',
                    ' ', '0', '0', ':', '0', '0', ':', '0', '0'};
    const auto put = [&text](std::size_t last, int number) {
        for (; number > 0; number /= 10) text[last--] = static_cast<char>('0' + number % 10);
    };
    put(3, time.year);
    put(6, time.month);
    put(9, time.day);
    put(12, time.hour);
    put(15, time.minute);
    put(18, time.second);
    return text;
}

std::optional<CalendarTime> readStoredDate(std::string_view text) {
    CalendarTime time;
    if (!takeNumber(text, 4, time.year) || !takeMark(text, '-') || !takeNumber(text, 2, time.month) ||
        !takeMark(text, '-') || !takeNumber(text, 2, time.day)) {
        return std::nullopt;
    }
    if (!text.empty() &&
        (!takeMark(text, ' ') || !takeNumber(text, 2, time.hour) || !takeMark(text, ':') ||
         !takeNumber(text, 2, time.minute) || !takeMark(text, ':') || !takeNumber(text, 2, time.second))) {
        return std::nullopt;
    }
    if (!text.empty() || !isCalendarTime(time)) return std::nullopt;
    return time;
}

DateReading readDayFirst(std::string_view text, CalendarTime& time) {
    constexpr int firstServerYear = 1753;
    time = {};
    if (!takeNumber(text, 2, time.day) || !takeMark(text, '/') || !takeNumber(text, 2, time.month) ||
        !takeMark(text, '/') || !takeNumber(text, 4, time.year)) {
        return DateReading::NotADate;
    }
    if (!text.empty() && (!takeMark(text, ' ') || !takeNumber(text, 2, time.hour) || !takeMark(text, ':') ||
                          !takeNumber(text, 2, time.minute))) {
        return DateReading::NotADate;
    }
    if (!text.empty() && (!takeMark(text, ':') || !takeNumber(text, 2, time.second) || !text.empty())) {
        return DateReading::NotADate;
    }
    return time.year >= firstServerYear && isCalendarTime(time) ? DateReading::Read : DateReading::OutOfRange;
}

}  // namespace pxtarvo::portable
