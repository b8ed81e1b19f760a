#include "devhost/library/host_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "host/tables.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::string_view whereWord = " WHERE ";
constexpr std::size_t mostForms = 64;  ///< far more than a run has

bool isPlainWord(std::string_view name) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    return !name.empty() && isLetter(name.front()) &&
           std::ranges::all_of(name, [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); });
}

/// The SQL expression that the column holds, nullptr where it holds a value.
const std::string* expressionOf(const WrittenColumn& column) {
    if (column.nTipo != static_cast<std::int32_t>(Tipo::Expresion) || column.value.isNull()) return nullptr;
    const auto* text = column.value.get<std::string>();
    if (!text) throw RuntimeError(ErrorNumber::TypeMismatch);
    return text;
}

void appendLiteral(std::string& sql, const portable::LiteralValue& value) {
    char digits[400];  // the smallest numbers take some 340 without an exponent
    const auto append = [&](std::to_chars_result written) { sql.append(digits, written.ptr); };
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        append(std::to_chars(std::begin(digits), std::end(digits), *whole));
    } else if (const auto* number = std::get_if<double>(&value)) {
        append(std::to_chars(std::begin(digits), std::end(digits), *number, std::chars_format::fixed));
    } else if (const auto* text = std::get_if<std::string_view>(&value)) {
        sql.append("'").append(replaced(*text, "'", "''")).append("'");
    } else {
        sql += "NULL";
    }
}

/// The statement that does the write; `appendNext` appends the next value that is no expression.
template <class AppendNext>
std::string composed(const HostWrite& write, const AppendNext& appendNext) {
    std::string sql;
    const auto columns = [&](std::string_view begin, const auto& append) {
        sql += begin;
        std::string_view separator;
        for (const WrittenColumn& column : write.columns) {
            sql += std::exchange(separator, ",");
            append(column);
        }
    };
    const auto name = [&](const WrittenColumn& column) { sql += column.name; };
    const auto value = [&](const WrittenColumn& column) {
        const std::string* const expression = expressionOf(column);
        expression ? void(sql += *expression) : appendNext(sql);
    };
    switch (write.kind) {
        case WriteKind::Delete:
            sql.append("DELETE FROM ").append(write.table).append(write.condition);
            break;
        case WriteKind::Update:
            sql.append("UPDATE ").append(write.table);
            columns(" SET ", [&](const WrittenColumn& column) {
                name(column);
                sql += '=';
                value(column);
            });
            sql += write.condition;
            break;
        case WriteKind::Insert:
            sql.append("INSERT INTO ").append(write.table);
            columns(" (", name);
            columns(") VALUES (", value);
            sql += ')';
            break;
    }
    return sql;
}

}  // namespace

HostWriter::HostWriter(const ObjectRef<Connection>& connection, const Locale& locale)
    : connection_(connection),
      database_(dynamic_cast<portable::SqliteConnection*>(connection.shared().get())),
      locale_(locale) {}

std::string_view HostWriter::kept(std::string text) {
    return texts_.emplace_back(std::move(text));
}

portable::LiteralValue HostWriter::valueOf(const WrittenColumn& column) {
    const Variant& value = column.value;
    if (value.isNull()) return Null{};
    const auto* text = value.get<std::string>();
    switch (static_cast<Tipo>(column.nTipo)) {
        case Tipo::Booleano:
            return std::int64_t{toBoolean(value, locale_)};
        case Tipo::Entero:
            return std::int64_t{toLong(value, locale_)};
        case Tipo::Decimal: {
            const double number = toDouble(value, locale_);
            if (!std::isfinite(number)) throw RuntimeError(ErrorNumber::Overflow);
            return number;
        }
        case Tipo::Texto:
            return text ? std::string_view(*text) : kept(toText(value, locale_));
        case Tipo::Fecha:
            return text ? std::string_view(*text) : kept(dayMonthYear(value, locale_));
        case Tipo::Expresion:
            break;
    }
    throw RuntimeError(ErrorNumber::InvalidProcedureCall);
}

void HostWriter::takeValues(const HostWrite& write) {
    values_.clear();
    texts_.clear();
    for (const WrittenColumn& column : write.columns) {
        if (!expressionOf(column)) values_.push_back(valueOf(column));
    }
}

bool HostWriter::Form::serves(const HostWrite& write, std::string_view itsWhere) const {
    return kind == write.kind && table == write.table && where == itsWhere &&
           std::ranges::equal(columns, write.columns, [](const Column& known, const WrittenColumn& column) {
               if (known.name != column.name) return false;
               const std::string* const expression = expressionOf(column);
               return expression ? known.expression == *expression : known.expression.empty();
           });
}

HostWriter::Form* HostWriter::formOf(const HostWrite& write) {
    for (std::size_t tried = 0; tried < forms_.size(); ++tried, ++next_) {
        if (next_ >= forms_.size()) next_ = 0;
        if (forms_[next_].serves(write, where_.key)) return &forms_[next_++];
    }
    // Inside a plain word no text, comment or second statement can begin; nor in the server's date.
    if (!isPlainWord(write.table)) return nullptr;
    if (!where_.key.empty() && !where_.key.starts_with(whereWord)) return nullptr;
    std::vector<Column> columns;
    for (const WrittenColumn& column : write.columns) {
        const std::string* const expression = expressionOf(column);
        if (!isPlainWord(column.name) || (expression && *expression != sFechaServidor)) return nullptr;
        columns.push_back({column.name, expression ? *expression : ""});
    }
    if (forms_.size() == mostForms) forms_.clear();
    forms_.push_back({write.kind, std::string(write.table), where_.key, std::move(columns),
                      portable::BoundStatement(composed(write, [](std::string& sql) { sql += "''"; }))});
    next_ = forms_.size();
    return &forms_.back();
}

bool HostWriter::runBound(const HostWrite& write) {
    if (!database_) return false;
    portable::takeShape(write.condition, where_);
    Form* const form = formOf(write);
    if (!form) return false;
    const std::size_t ofColumns = values_.size();
    for (const portable::SqlToken& literal : where_.literals) values_.emplace_back(&literal);
    if (database_->runBound(form->statement, values_)) return true;
    values_.resize(ofColumns);
    return false;
}

void HostWriter::run(const HostWrite& asGiven) {
    HostWrite write = asGiven;
    // What is no part of the statement.
    if (write.kind == WriteKind::Delete) write.columns = {};
    if (write.kind == WriteKind::Insert) write.condition = {};
    takeValues(write);
    if (runBound(write)) return;
    auto next = values_.begin();
    connection_->Execute(composed(write, [&](std::string& sql) { appendLiteral(sql, *next++); }),
                         adExecuteNoRecords);
}

}  // namespace pxtarvo::devhost
