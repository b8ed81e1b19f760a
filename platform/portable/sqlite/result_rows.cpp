#include "platform/portable/sqlite/result_rows.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "platform/values/decimal_number.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo::portable {

namespace {

constexpr std::size_t wordBytes = sizeof(std::uint64_t);
constexpr std::size_t largestBlockWords = std::size_t{1} << 16;

constexpr std::size_t wordsFor(std::size_t bytes) {
    return (bytes + wordBytes - 1) / wordBytes;
}

struct ResultColumn {
    const std::string& name;
    ColumnDeclaration declaration;
};

[[noreturn]] void raiseUnfit(const ResultColumn& column) {
    throw RuntimeError(ErrorNumber::ConversionFailed,
                       "El valor almacenado en la columna '" + column.name + "' no es del tipo de datos " +
                           std::string(serverTypeName(column.declaration.type)) + ".");
}

/// A value of SQLite's: NULL, an integer, a double or a text.
struct StoredValue {
    int kind = SQLITE_NULL;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view text;

    bool isNumber() const { return kind == SQLITE_INTEGER || kind == SQLITE_FLOAT; }
    double number() const { return kind == SQLITE_INTEGER ? static_cast<double>(integer) : real; }
};

std::string asText(const StoredValue& value) {
    if (!value.isNumber()) return std::string(value.text);
    std::array<char, 32> digits{};
    const auto written = value.kind == SQLITE_INTEGER
                             ? std::to_chars(digits.data(), digits.data() + digits.size(), value.integer)
                             : std::to_chars(digits.data(), digits.data() + digits.size(), value.real);
    return {digits.data(), written.ptr};
}

Variant byStoredKind(const StoredValue& value) {
    if (value.kind == SQLITE_FLOAT) return value.real;
    if (value.kind != SQLITE_INTEGER) return value.text;
    const WholeRange longs = wholeRange(ColumnType::Int);
    if (value.integer < longs.lowest || value.integer > longs.highest)
        return static_cast<double>(value.integer);
    return static_cast<std::int32_t>(value.integer);
}

Variant asWhole(const StoredValue& value, const ResultColumn& column) {
    const ColumnType type = column.declaration.type;
    if (value.kind != SQLITE_INTEGER) raiseUnfit(column);
    if (type == ColumnType::Bit) return value.integer != 0;
    const WholeRange range = wholeRange(type);
    if (value.integer < range.lowest || value.integer > range.highest) raiseUnfit(column);
    if (type == ColumnType::TinyInt) return static_cast<std::uint8_t>(value.integer);
    if (type == ColumnType::SmallInt) return static_cast<std::int16_t>(value.integer);
    return static_cast<std::int32_t>(value.integer);
}

/// A number in units of 10^-scale, as whole as it can be; beyond 18 digits it does not fit.
std::int64_t scaled(const StoredValue& value, int scale, const ResultColumn& column) {
    const double units = std::round(value.number() * std::pow(10.0, scale));
    if (!(std::fabs(units) < 1e18)) raiseUnfit(column);
    return static_cast<std::int64_t>(units);
}

Variant declaredValue(const StoredValue& value, const ResultColumn& column) {
    const ColumnType type = column.declaration.type;
    if (type == ColumnType::Undeclared) return byStoredKind(value);
    if (type == ColumnType::Text) return asText(value);
    if (type == ColumnType::DateTime) {
        if (value.kind != SQLITE_TEXT) raiseUnfit(column);
        const auto date = readStoredDate(value.text);
        if (!date) raiseUnfit(column);
        return toDate(*date);
    }
    if (!value.isNumber()) raiseUnfit(column);
    if (isWhole(type)) return asWhole(value, column);
    if (type == ColumnType::Float) return value.number();
    if (type == ColumnType::Real) return static_cast<float>(value.number());
    if (type == ColumnType::Money) return Currency{scaled(value, 4, column)};
    return decimalOf(scaled(value, column.declaration.scale, column), column.declaration.scale);
}

}  // namespace

void StoredRows::makeRoom(std::size_t words, std::size_t kept) {
    if (words <= freeWords_) return;
    freeWords_ = std::max(words, nextBlockWords_);
    nextBlockWords_ = std::min(nextBlockWords_ * 4, largestBlockWords);
    blocks_.push_back(std::make_unique_for_overwrite<Word[]>(freeWords_));
    Word* const block = blocks_.back().get();
    if (kept > 0) std::memcpy(block, free_, kept * wordBytes);
    free_ = block;
}

void StoredRows::append(sqlite3_stmt* statement) {
    const std::size_t count = names().size();
    const std::size_t headWords = count + wordsFor(count);
    makeRoom(headWords, 0);
    std::size_t used = headWords * wordBytes;
    for (std::size_t column = 0; column < count; ++column) {
        // one call of SQLite's per value; the connection is used by one thread, so the value needs no
        // protection
        sqlite3_value* const value = sqlite3_column_value(statement, static_cast<int>(column));
        const int kind = sqlite3_value_type(value);
        Word payload = 0;
        if (kind == SQLITE_INTEGER) {
            payload = static_cast<Word>(sqlite3_value_int64(value));
        } else if (kind == SQLITE_FLOAT) {
            payload = std::bit_cast<Word>(sqlite3_value_double(value));
        } else if (kind != SQLITE_NULL) {
            const void* const text = sqlite3_value_blob(value);
            const auto length = static_cast<std::size_t>(sqlite3_value_bytes(value));
            if (used + length > std::numeric_limits<std::uint32_t>::max()) {
                throw RuntimeError(ErrorNumber::ProviderFailure, "La fila es demasiado larga.");
            }
            makeRoom(wordsFor(used + length), wordsFor(used));
            if (length > 0) std::memcpy(reinterpret_cast<char*>(free_) + used, text, length);
            payload = (static_cast<Word>(used) << 32) | length;
            used += length;
        }
        free_[column] = payload;
        reinterpret_cast<unsigned char*>(free_ + count)[column] = static_cast<unsigned char>(kind);
    }
    const Word* const row = free_;
    free_ += wordsFor(used);
    freeWords_ -= wordsFor(used);
    if (rowCount_++ == 0) {
        firstRow_ = row;
    } else {
        laterRows_.push_back(row);
    }
}

Variant StoredRows::value(std::size_t row, std::size_t column) const {
    const Word* const words = row == 0 ? firstRow_ : laterRows_[row - 1];
    StoredValue stored;
    stored.kind = reinterpret_cast<const unsigned char*>(words + names().size())[column];
    const Word payload = words[column];
    switch (stored.kind) {
        case SQLITE_NULL:
            return Null{};
        case SQLITE_INTEGER:
            stored.integer = static_cast<std::int64_t>(payload);
            break;
        case SQLITE_FLOAT:
            stored.real = std::bit_cast<double>(payload);
            break;
        default:
            stored.text = {reinterpret_cast<const char*>(words) + (payload >> 32),
                           static_cast<std::size_t>(payload & 0xFFFFFFFF)};
    }
    return declaredValue(stored, {names()[column], columns_->declarations[column]});
}

}  // namespace pxtarvo::portable
