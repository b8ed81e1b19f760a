#pragma once

// Reading the changes that were kept of a run, row by row.

#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <string_view>

namespace pxtarvo::devhost {

enum class ChangeKind { Inserted, Updated, Deleted };

/// One value of a changed row. Valid while the row is being visited.
class ChangedValue {
  public:
    explicit ChangedValue(sqlite3_value* value) : value_(value) {}

    /// False for a column that an update left as it was, and on the side that a new or deleted row lacks.
    bool known() const noexcept { return value_ != nullptr; }
    /// These take an unknown value for Null; whole() gives 0 for Null and for texts without a number.
    bool isNull() const noexcept { return !value_ || sqlite3_value_type(value_) == SQLITE_NULL; }
    std::int64_t whole() const noexcept { return value_ ? sqlite3_value_int64(value_) : 0; }
    std::string_view text() const noexcept;
    /// The SQLite value itself, nullptr where it is unknown.
    sqlite3_value* raw() const noexcept { return value_; }

  private:
    sqlite3_value* value_;
};

/// One changed row.
class KeptChange {
  public:
    explicit KeptChange(sqlite3_changeset_iter* row);

    std::string_view table() const noexcept { return table_; }
    ChangeKind kind() const noexcept { return kind_; }
    int columnCount() const noexcept { return columns_; }
    /// The position of the key, -1 for one of several columns.
    int key() const noexcept { return key_; }
    /// Of the column at a 0-based position, which must be below columnCount().
    ChangedValue before(int column) const;
    ChangedValue after(int column) const;
    /// The key's own, whichever side has it.
    std::int64_t keyValue() const;

  private:
    sqlite3_changeset_iter* row_;
    std::string_view table_;
    ChangeKind kind_ = ChangeKind::Inserted;
    int columns_ = 0;
    int key_ = -1;
};

/// Visits the rows in the order in which the changes are kept: table by table. Raises std::runtime_error for
/// what is no changeset.
void forEachChange(std::string_view changes, const std::function<void(const KeptChange&)>& visit);

}  // namespace pxtarvo::devhost
