#include "devhost/changes/row_pair.h"

namespace pxtarvo::devhost {

RowPair::RowPair(sqlite3_stmt* before, sqlite3_stmt* after, int columns)
    : before_(before), after_(after), changed_(static_cast<std::size_t>(columns)) {}

void RowPair::take(bool hasBefore, bool hasAfter) {
    hasBefore_ = hasBefore;
    hasAfter_ = hasAfter;
    change_ = !hasBefore ? RowChange::Inserted : !hasAfter ? RowChange::Deleted : RowChange::None;
    if (change_ != RowChange::None) return;
    for (int column = 0; column < columnCount(); ++column) {
        const bool differs = !(before(column) == after(column));
        changed_[static_cast<std::size_t>(column)] = differs;
        if (differs) change_ = RowChange::Updated;
    }
}

}  // namespace pxtarvo::devhost
