#pragma once

// One value of a table's row, as SQLite holds it.

#include <sqlite3.h>

#include <cstdint>
#include <string_view>

namespace pxtarvo::devhost {

/// Valid while its row is being visited, by one thread: a value of a statement's row must be that of a
/// connection without mutexes, where SQLite lets it be read like any other.
class RowValue {
  public:
    /// nullptr for a value that is not known.
    explicit RowValue(sqlite3_value* value) : value_(value) {}

    bool known() const noexcept { return value_ != nullptr; }
    /// SQLITE_INTEGER and so on, as it is stored; an unknown value is taken for Null here and below.
    int type() const noexcept { return value_ ? sqlite3_value_type(value_) : SQLITE_NULL; }
    bool isNull() const noexcept { return type() == SQLITE_NULL; }
    /// 0 for Null and for texts without a number, both.
    std::int64_t whole() const noexcept { return value_ ? sqlite3_value_int64(value_) : 0; }
    double number() const noexcept { return value_ ? sqlite3_value_double(value_) : 0; }
    /// Numbers as texts too; empty for Null.
    std::string_view text() const noexcept;
    /// Of a stored text or blob.
    std::string_view bytes() const noexcept;

    /// Of the same type and the same bytes.
    friend bool operator==(const RowValue& one, const RowValue& other) noexcept;

  private:
    sqlite3_value* value_;
};

}  // namespace pxtarvo::devhost
