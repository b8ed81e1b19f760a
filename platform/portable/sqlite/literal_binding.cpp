#include "platform/portable/sqlite/literal_binding.h"

#include <charconv>
#include <cmath>
#include <string>

#include "platform/portable/sqlite/sqlite_handles.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

struct Number {
    bool whole = false;
    std::int64_t integer = 0;
    double real = 0;
};

/// Only the whole of `text` is a number: digits, a point, an exponent and, where `sign` is set, a sign.
bool readNumber(std::string_view text, bool sign, Number& number) {
    if (sign && text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
    const char* const first = text.data();
    const char* const last = first + text.size();
    const auto whole = std::from_chars(first, last, number.integer);
    number.whole = whole.ec == std::errc() && whole.ptr == last;
    if (number.whole) return true;
    const auto real = std::from_chars(first, last, number.real);
    return real.ec == std::errc() && real.ptr == last && std::isfinite(number.real);
}

[[noreturn]] void raiseConversion(std::string text) {
    throw RuntimeError(ErrorNumber::ConversionFailed, std::move(text));
}

[[noreturn]] void raiseOutOfRange(ColumnType type) {
    raiseConversion("Error de desbordamiento aritmético al convertir la expresión al tipo de datos " +
                    std::string(serverTypeName(type)) + ".");
}

void check(sqlite3_stmt* statement, int result) {
    if (result != SQLITE_OK) throw providerError(sqlite3_db_handle(statement));
}

void bindText(sqlite3_stmt* statement, int parameter, std::string_view text, sqlite3_destructor_type keep) {
    check(statement, sqlite3_bind_text64(statement, parameter, text.data(), text.size(), keep, SQLITE_UTF8));
}

/// `text` is nullptr for a number.
void bindDate(sqlite3_stmt* statement, int parameter, const std::string_view* text) {
    CalendarTime time;
    switch (text ? readDayFirst(*text, time) : DateReading::NotADate) {
        case DateReading::NotADate:
            raiseConversion("Error de conversión al convertir una cadena de caracteres en fecha y/u hora.");
        case DateReading::OutOfRange:
            raiseConversion(
                "La conversión del tipo de datos varchar en datetime produjo un valor fuera de intervalo.");
        case DateReading::Read:
            break;
    }
    const StoredDate stored = storedDate(time);
    bindText(statement, parameter, {stored.data(), stored.size()}, SQLITE_TRANSIENT);
}

/// The number as a column of whole numbers stores it.
void makeWhole(Number& number, ColumnType type) {
    if (type == ColumnType::Bit) {
        number = {true, number.whole ? number.integer != 0 : number.real != 0, 0};
        return;
    }
    const WholeRange range = wholeRange(type);
    if (!number.whole) {
        const double cut = std::trunc(number.real);
        if (!(cut >= static_cast<double>(range.lowest) && cut <= static_cast<double>(range.highest))) {
            raiseOutOfRange(type);
        }
        number = {true, static_cast<std::int64_t>(cut), 0};
    }
    if (number.integer < range.lowest || number.integer > range.highest) raiseOutOfRange(type);
}

void bindNumber(sqlite3_stmt* statement, int parameter, Number number, const LiteralUse& use) {
    if (use.negated) {
        number.integer = -number.integer;
        number.real = -number.real;
    }
    if (use.assigned && isWhole(use.target)) makeWhole(number, use.target);
    check(statement, number.whole ? sqlite3_bind_int64(statement, parameter, number.integer)
                                  : sqlite3_bind_double(statement, parameter, number.real));
}

void bindDigits(sqlite3_stmt* statement, int parameter, std::string_view digits, bool sign,
                const LiteralUse& use) {
    Number number;
    if (!readNumber(digits, sign, number)) {
        raiseConversion("Error al convertir el tipo de datos varchar a " +
                        std::string(serverTypeName(use.target)) + ".");
    }
    bindNumber(statement, parameter, number, use);
}

/// A number without decimals is a whole one as far as 64 bits hold its digits, which come without their sign.
Number numberOf(double value) {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (std::trunc(value) == value && std::fabs(value) < limit) {
        return {true, static_cast<std::int64_t>(value), 0};
    }
    return {false, 0, value};
}

}  // namespace

void bindLiteral(sqlite3_stmt* statement, int parameter, const SqlToken& token, const LiteralUse& use) {
    const bool isText = token.kind == SqlTokenKind::Text;
    if (use.target == ColumnType::DateTime) {
        bindDate(statement, parameter, isText ? &token.text : nullptr);
    } else if (!isText) {
        bindDigits(statement, parameter, token.text, false, use);
    } else if (use.target != ColumnType::Undeclared) {
        bindDigits(statement, parameter, trimBlanks(token.text), true, use);
    } else if (token.doubled) {
        bindText(statement, parameter, plainText(token), SQLITE_TRANSIENT);
    } else {
        bindText(statement, parameter, token.text, SQLITE_STATIC);
    }
}

void bindValue(sqlite3_stmt* statement, int parameter, const LiteralValue& value, const LiteralUse& use) {
    const auto* const text = std::get_if<std::string_view>(&value);
    if (const auto* token = std::get_if<const SqlToken*>(&value)) {
        bindLiteral(statement, parameter, **token, use);
    } else if (std::holds_alternative<Null>(value)) {
        check(statement, sqlite3_bind_null(statement, parameter));
    } else if (use.target == ColumnType::DateTime) {
        bindDate(statement, parameter, text);
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        bindNumber(statement, parameter, {true, *whole, 0}, use);
    } else if (const auto* number = std::get_if<double>(&value)) {
        bindNumber(statement, parameter, numberOf(*number), use);
    } else if (use.target != ColumnType::Undeclared) {
        bindDigits(statement, parameter, trimBlanks(*text), true, use);
    } else {
        bindText(statement, parameter, *text, SQLITE_STATIC);
    }
}

}  // namespace pxtarvo::portable
