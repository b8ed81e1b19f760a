#pragma once

// The host server's column types, as the tables of the database file declare them, and the form in which the
// file keeps a date.

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/values/clock.h"

namespace pxtarvo::portable {

enum class ColumnType : std::uint8_t {
    Undeclared,  ///< an expression, or a declaration that names no type of the server
    Bit,
    TinyInt,
    SmallInt,
    Int,
    Float,
    Real,
    Money,
    Decimal,
    Text,
    DateTime
};

struct ColumnDeclaration {
    ColumnType type = ColumnType::Undeclared;
    std::uint8_t scale = 0;  ///< decimals of a Decimal
    friend bool operator==(const ColumnDeclaration&, const ColumnDeclaration&) = default;
};

/// Reads a declared type such as "VARCHAR(30)" or "decimal (10, 2)".
ColumnDeclaration readDeclaration(std::string_view declaration);

/// The server's name of the type, for messages.
std::string_view serverTypeName(ColumnType type);

inline bool isNumeric(ColumnType type) {
    return type >= ColumnType::Bit && type <= ColumnType::Decimal;
}
inline bool isWhole(ColumnType type) {
    return type >= ColumnType::Bit && type <= ColumnType::Int;
}

/// The values that a whole-number type holds.
struct WholeRange {
    std::int64_t lowest;
    std::int64_t highest;
};
WholeRange wholeRange(ColumnType type);

/// How the file keeps a date: "YYYY-MM-DD HH:MM:SS".
using StoredDate = std::array<char, 19>;

StoredDate storedDate(const CalendarTime& time);
/// A stored date, with or without its time of day; nullopt for any other text.
std::optional<CalendarTime> readStoredDate(std::string_view text);

enum class DateReading { Read, NotADate, OutOfRange };
/// Reads "DD/MM/YYYY", "DD/MM/YYYY HH:MM" or "DD/MM/YYYY HH:MM:SS", and nothing else; the server's dates
/// begin with the year 1753.
DateReading readDayFirst(std::string_view text, CalendarTime& time);

}  // namespace pxtarvo::portable
