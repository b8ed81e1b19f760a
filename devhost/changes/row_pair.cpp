#include "devhost/changes/row_pair.h"

#include <bit>

namespace pxtarvo::devhost {

std::string_view RowValue::text() const noexcept {
    if (!row_) return {};
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(row_, column_));
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(row_, column_))};
}

bool operator==(const RowValue& one, const RowValue& other) noexcept {
    const int type = one.type();
    if (type != other.type()) return false;
    switch (type) {
        case SQLITE_NULL:
            return true;
        case SQLITE_INTEGER:
            return one.whole() == other.whole();
        case SQLITE_FLOAT:
            return std::bit_cast<std::int64_t>(one.number()) == std::bit_cast<std::int64_t>(other.number());
        default:
            return one.text() == other.text();
    }
}

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
