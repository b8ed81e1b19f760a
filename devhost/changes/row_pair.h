#pragma once

// A row of a table before and after a run.

#include <sqlite3.h>

#include <vector>

#include "devhost/changes/row_value.h"

namespace pxtarvo::devhost {

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
    /// Unknown on the side that the row lacks.
    RowValue before(int column) const noexcept {
        return RowValue(hasBefore_ ? sqlite3_column_value(before_, column) : nullptr);
    }
    RowValue after(int column) const noexcept {
        return RowValue(hasAfter_ ? sqlite3_column_value(after_, column) : nullptr);
    }

  private:
    sqlite3_stmt* before_;
    sqlite3_stmt* after_;
    bool hasBefore_ = false;
    bool hasAfter_ = false;
    RowChange change_ = RowChange::None;
    std::vector<char> changed_;
};

}  // namespace pxtarvo::devhost
