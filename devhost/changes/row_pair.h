#pragma once

// A row of a table before and after a run.

#include <sqlite3.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace pxtarvo::devhost {

/// One value of a row. Valid while the row is being visited.
class RowValue {
  public:
    /// `row` may be nullptr, for Null.
    RowValue(sqlite3_stmt* row, int column) : row_(row), column_(column) {}

    bool isNull() const noexcept { return type() == SQLITE_NULL; }
    /// 0 for Null and for texts without a number, both.
    std::int64_t whole() const noexcept { return row_ ? sqlite3_column_int64(row_, column_) : 0; }
    double number() const noexcept { return row_ ? sqlite3_column_double(row_, column_) : 0; }
    /// The bytes of a text; empty for Null.
    std::string_view text() const noexcept;
    /// As it is stored: SQLITE_INTEGER and so on.
    int type() const noexcept { return row_ ? sqlite3_column_type(row_, column_) : SQLITE_NULL; }

    /// Of the same type and the same bytes.
    friend bool operator==(const RowValue& one, const RowValue& other) noexcept;

  private:
    sqlite3_stmt* row_;
    int column_;
};

enum class RowChange { None, Inserted, Updated, Deleted };

class RowPair {
  public:
    /// Over two statements whose rows have the same columns.
    RowPair(sqlite3_stmt* before, sqlite3_stmt* after, int columns);

    /// The rows at hand are those of one key; a side that has none is left out.
    void take(bool hasBefore, bool hasAfter);

    RowChange change() const noexcept { return change_; }
    /// Of an update, whether the column at a 0-based position is another.
    bool changed(int column) const { return changed_.at(static_cast<std::size_t>(column)) != 0; }
    int columnCount() const noexcept { return static_cast<int>(changed_.size()); }
    /// Null on the side that the row lacks.
    RowValue before(int column) const noexcept { return {hasBefore_ ? before_ : nullptr, column}; }
    RowValue after(int column) const noexcept { return {hasAfter_ ? after_ : nullptr, column}; }

  private:
    sqlite3_stmt* before_;
    sqlite3_stmt* after_;
    bool hasBefore_ = false;
    bool hasAfter_ = false;
    RowChange change_ = RowChange::None;
    std::vector<char> changed_;
};

}  // namespace pxtarvo::devhost
