#include "devhost/library/write_statement.h"

#include <charconv>
#include <cmath>
#include <utility>

#include "host/tables.h"
#include "platform/values/conversion.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo::devhost {

namespace {

void appendWhole(std::string& sql, std::int32_t number) {
    char digits[16];
    sql.append(digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr);
}

void appendDecimal(std::string& sql, double number) {
    if (!std::isfinite(number)) throw RuntimeError(ErrorNumber::Overflow);
    char digits[400];  // the smallest numbers take some 340 without an exponent
    sql.append(digits,
               std::to_chars(std::begin(digits), std::end(digits), number, std::chars_format::fixed).ptr);
}

void appendQuoted(std::string& sql, std::string_view text) {
    sql += '\'';
    for (std::size_t quote; (quote = text.find('\'')) != std::string_view::npos;
         text.remove_prefix(quote + 1)) {
        sql.append(text.substr(0, quote)).append("''");
    }
    sql.append(text) += '\'';
}

}  // namespace

void appendLiteral(std::string& sql, std::int32_t nTipo, const Variant& value, const Locale& locale) {
    if (value.isNull()) {
        sql += "NULL";
        return;
    }
    const std::string* text = value.get<std::string>();
    switch (static_cast<Tipo>(nTipo)) {
        case Tipo::Booleano:
            sql += toBoolean(value, locale) ? '1' : '0';
            return;
        case Tipo::Entero:
            // Constants and identifiers, nearly all that is written, need no conversion.
            if (const auto* constant = value.get<std::int16_t>()) return appendWhole(sql, *constant);
            if (const auto* identifier = value.get<std::int32_t>()) return appendWhole(sql, *identifier);
            return appendWhole(sql, toLong(value, locale));
        case Tipo::Decimal:
            return appendDecimal(sql, toDouble(value, locale));
        case Tipo::Texto:
            return text ? appendQuoted(sql, *text) : appendQuoted(sql, toText(value, locale));
        case Tipo::Fecha:
            return text ? appendQuoted(sql, *text) : appendQuoted(sql, dayMonthYear(value, locale));
        case Tipo::Expresion:
            if (!text) throw RuntimeError(ErrorNumber::TypeMismatch);
            sql += *text;
            return;
    }
    throw RuntimeError(ErrorNumber::InvalidProcedureCall);
}

void composeWrite(std::string& sql, const HostWrite& write, const Locale& locale) {
    switch (write.kind) {
        case WriteKind::Delete:
            sql.append("DELETE FROM ").append(write.table).append(write.condition);
            return;
        case WriteKind::Update: {
            sql.append("UPDATE ").append(write.table).append(" SET ");
            std::string_view separator;
            for (const WrittenColumn& column : write.columns) {
                sql.append(std::exchange(separator, ",")).append(column.name) += '=';
                appendLiteral(sql, column.nTipo, column.value, locale);
            }
            sql.append(write.condition);
            return;
        }
        case WriteKind::Insert: {
            sql.append("INSERT INTO ").append(write.table).append(" (");
            std::string_view separator;
            for (const WrittenColumn& column : write.columns) {
                sql.append(std::exchange(separator, ",")).append(column.name);
            }
            sql.append(") VALUES (");
            separator = {};
            for (const WrittenColumn& column : write.columns) {
                sql.append(std::exchange(separator, ","));
                appendLiteral(sql, column.nTipo, column.value, locale);
            }
            sql += ')';
            return;
        }
    }
}

}  // namespace pxtarvo::devhost
