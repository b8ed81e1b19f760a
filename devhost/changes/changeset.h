#pragma once

// Reading the changes that were kept of a run, row by row.

#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <string_view>

#include "devhost/changes/row_value.h"

namespace pxtarvo::devhost {

/// One changed row.
class KeptChange {
  public:
    explicit KeptChange(sqlite3_changeset_iter* row);

    std::string_view table() const noexcept { return table_; }
    int columnCount() const noexcept { return columns_; }
    /// The position of the key, -1 for one of several columns.
    int key() const noexcept { return key_; }
    /// Of the column at a 0-based position, which must be below columnCount(); unknown where an update left
    /// it as it was, and on the side that a new or deleted row lacks.
    RowValue before(int column) const;
    /// The key's own, whichever side has it.
    std::int64_t keyValue() const;

  private:
    sqlite3_changeset_iter* row_;
    std::string_view table_;
    bool inserted_ = false;
    int columns_ = 0;
    int key_ = -1;
};

/// Visits the rows in the order in which the changes are kept: table by table. Raises std::runtime_error for
/// what is no changeset.
void forEachChange(std::string_view changes, const std::function<void(const KeptChange&)>& visit);

}  // namespace pxtarvo::devhost
