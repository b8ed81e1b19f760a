#include "devhost/library/bound_writes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "devhost/library/write_statement.h"
#include "host/tables.h"
#include "platform/values/conversion.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::string_view whereWord = " WHERE ";
constexpr std::string_view equals = " = ";
constexpr std::size_t mostForms = 64;  ///< far more than a run has

bool isPlainWord(std::string_view name) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    return !name.empty() && isLetter(name.front()) &&
           std::ranges::all_of(name, [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); });
}

/// Takes " WHERE column = " and the number apart.
bool splitCondition(std::string_view condition, std::string_view& where, std::int64_t& number) {
    const std::size_t at = condition.rfind(equals);
    if (at == std::string_view::npos) return false;
    where = condition.substr(0, at + equals.size());
    const char* const last = condition.data() + condition.size();
    std::int32_t read = 0;
    const auto result = std::from_chars(condition.data() + where.size(), last, read);
    number = read;
    return result.ec == std::errc() && result.ptr == last;
}

/// Any literal of the kind.
Variant placeholder(std::int32_t nTipo) {
    switch (static_cast<Tipo>(nTipo)) {
        case Tipo::Booleano:
        case Tipo::Entero:
        case Tipo::Decimal:
            return std::int16_t{0};
        case Tipo::Expresion:
            return sFechaServidor;
        default:
            return "";
    }
}

}  // namespace

void BoundWrites::takeText(std::string text) {
    texts_.push_back(std::move(text));
    values_.emplace_back(std::string_view(texts_.back()));
}

bool BoundWrites::takeValues(const HostWrite& write) {
    values_.clear();
    texts_.clear();
    for (const WrittenColumn& column : write.columns) {
        if (column.value.isNull()) return false;
        const auto* text = column.value.get<std::string>();
        switch (static_cast<Tipo>(column.nTipo)) {
            case Tipo::Booleano:
                values_.emplace_back(std::int64_t{toBoolean(column.value, locale_)});
                break;
            case Tipo::Entero:
                values_.emplace_back(std::int64_t{toLong(column.value, locale_)});
                break;
            case Tipo::Decimal: {
                const double number = toDouble(column.value, locale_);
                if (!std::isfinite(number)) return false;
                values_.emplace_back(number);
                break;
            }
            case Tipo::Texto:
                if (text) {
                    values_.emplace_back(std::string_view(*text));
                } else {
                    takeText(toText(column.value, locale_));
                }
                break;
            case Tipo::Fecha:
                if (text) {
                    values_.emplace_back(std::string_view(*text));
                } else {
                    takeText(dayMonthYear(column.value, locale_));
                }
                break;
            case Tipo::Expresion:
                if (!text || *text != sFechaServidor) return false;
                break;
            default:
                return false;
        }
    }
    return true;
}

bool BoundWrites::Form::serves(const HostWrite& write, std::string_view itsWhere) const {
    return kind == write.kind && table == write.table && where == itsWhere &&
           std::ranges::equal(columns, write.columns, [](const Column& known, const WrittenColumn& column) {
               return known.nTipo == column.nTipo && known.name == column.name;
           });
}

BoundWrites::Form* BoundWrites::formOf(const HostWrite& write, std::string_view where) {
    for (std::size_t tried = 0; tried < forms_.size(); ++tried, ++next_) {
        if (next_ >= forms_.size()) next_ = 0;
        if (forms_[next_].serves(write, where)) return &forms_[next_++];
    }
    // Inside a plain word no text, comment or second statement can begin.
    std::string_view key = where;
    if (!key.empty()) {
        if (!key.starts_with(whereWord)) return nullptr;
        key.remove_prefix(whereWord.size());
        key.remove_suffix(equals.size());
        if (!isPlainWord(key)) return nullptr;
    }
    if (!isPlainWord(write.table)) return nullptr;
    std::vector<Column> columns;
    std::vector<WrittenColumn> placeholders;
    for (const WrittenColumn& column : write.columns) {
        if (!isPlainWord(column.name)) return nullptr;
        columns.push_back({column.name, column.nTipo});
        placeholders.push_back({column.name, column.nTipo, placeholder(column.nTipo)});
    }
    const std::string condition = where.empty() ? std::string() : std::string(where) + '0';
    std::string sql;
    composeWrite(sql, {write.kind, write.table, condition, placeholders}, locale_);

    if (forms_.size() == mostForms) forms_.clear();
    forms_.push_back({write.kind, std::string(write.table), std::string(where), std::move(columns),
                      portable::BoundStatement(std::move(sql))});
    next_ = forms_.size();
    return &forms_.back();
}

bool BoundWrites::run(const HostWrite& asGiven) {
    HostWrite write = asGiven;
    if (write.kind == WriteKind::Delete) write.columns = {};  // they are no part of the statement
    std::string_view where;
    std::int64_t number = 0;
    const bool conditional = write.kind != WriteKind::Insert;
    if (conditional && !splitCondition(write.condition, where, number)) return false;
    if (!takeValues(write)) return false;
    Form* const form = formOf(write, where);
    if (!form) return false;
    if (conditional) values_.emplace_back(number);
    connection_.runBound(form->statement, values_);
    return true;
}

}  // namespace pxtarvo::devhost
