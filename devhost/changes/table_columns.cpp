#include "devhost/changes/table_columns.h"

#include "platform/portable/sqlite/sqlite_handles.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

TableColumns::TableColumns(sqlite3* database, std::string_view table) {
    const auto query =
        portable::prepare(database, "SELECT name, pk, type FROM pragma_table_info(?1) ORDER BY cid");
    sqlite3_bind_text(query.get(), 1, table.data(), static_cast<int>(table.size()), SQLITE_STATIC);
    const auto text = [&](int column) {
        return reinterpret_cast<const char*>(sqlite3_column_text(query.get(), column));
    };
    int keys = 0;
    while (portable::step(query.get())) {
        const bool whole = equalIgnoringAsciiCase(text(2), "INTEGER");
        if (sqlite3_column_int(query.get(), 1) != 0 && ++keys == 1 && whole)
            key_ = static_cast<int>(names_.size());
        names_.emplace_back(text(0));
    }
    if (keys > 1) key_ = -1;
}

int TableColumns::position(std::string_view column) const {
    for (std::size_t at = 0; at < names_.size(); ++at) {
        if (equalIgnoringAsciiCase(names_[at], column)) return static_cast<int>(at);
    }
    return -1;
}

}  // namespace pxtarvo::devhost
