#pragma once

// What a run really changed: each table as it was beside the table as it is. A session of SQLite that records
// while the run writes would double the run's time, and its own comparison takes more than twice this one's.

#include <cstddef>
#include <functional>
#include <string>

#include "devhost/changes/database_image.h"
#include "devhost/changes/row_pair.h"
#include "devhost/changes/table_columns.h"
#include "host/tables.h"

namespace pxtarvo::devhost {

/// A table, or half of the keys of a large one, so that two threads have as much to do.
struct TablePart {
    const Tabla& table;
    const TableColumns& columns;
    std::size_t half;  ///< 0 the lower one or the whole, 1 the upper one
};

/// Sees the rows of a part in the order of their keys, those that did not change among them.
using RowVisitor = std::function<void(const RowPair&)>;
/// Who sees the rows of a part; may be empty and may give nobody.
using VisitorOf = std::function<RowVisitor(const TablePart&)>;

struct RunChanges {
    bool any = false;
    std::string changeset;  ///< of SQLite's session extension, table by table; empty where it was not wanted
};

/// Compares the host's tables, those that the database has. Where there is much to do, two threads take
/// the parts in turn: visitors of different parts may then be at work, and be asked for, at once. Raises the
/// provider's error, and what a visitor raises.
RunChanges compareTables(const BeforeAndAfter& states, bool wantsChangeset, const VisitorOf& visitorOf);

}  // namespace pxtarvo::devhost
