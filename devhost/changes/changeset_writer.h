#pragma once

// Writes changes in the format that SQLite's session extension reads: a header and the changed rows of each
// table (https://sqlite.org/session/intro.html; the layout stands at the head of
// ext/session/sqlite3session.c).

#include <string>
#include <string_view>
#include <utility>

#include "devhost/changes/row_pair.h"

namespace pxtarvo::devhost {

/// The changes of one table.
class ChangesetWriter {
  public:
    /// `key` is the 0-based position of the key.
    ChangesetWriter(std::string_view table, int key) : table_(table), key_(key) {}

    /// A row that is as it was leaves nothing.
    void row(const RowPair& pair);
    /// Empty where no row has changed.
    std::string take() { return std::move(bytes_); }

  private:
    void header(int columns);

    std::string table_;
    int key_;
    std::string bytes_;
};

}  // namespace pxtarvo::devhost
