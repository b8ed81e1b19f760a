#include "platform/portable/sqlite/sqlite_schema.h"

#include "platform/portable/sqlite/sqlite_handles.h"

namespace pxtarvo::portable {

namespace {

std::string textAt(sqlite3_stmt* statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text ? std::string(text) : std::string();
}

}  // namespace

bool SqliteSchema::refresh(sqlite3* database) {
    const StatementHandle asked = prepare(database, "PRAGMA schema_version");
    step(asked.get());
    const std::int64_t version = sqlite3_column_int64(asked.get(), 0);
    if (version_ == version) return false;

    std::vector<SqlTable> tables;
    const StatementHandle columns =
        prepare(database,
                "SELECT t.name, c.name, c.type, c.pk AND 1 = (SELECT count(*) "
                "FROM pragma_table_info(t.name) WHERE pk > 0) FROM sqlite_schema "
                "AS t, pragma_table_info(t.name) AS c WHERE t.type IN ('table', 'view') "
                "AND t.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY t.name, c.cid");
    while (step(columns.get())) {
        std::string table = textAt(columns.get(), 0);
        if (tables.empty() || tables.back().name != table) tables.push_back({std::move(table), {}, {}});
        tables.back().columns.push_back(
            {textAt(columns.get(), 1), readDeclaration(textAt(columns.get(), 2))});
        if (sqlite3_column_int(columns.get(), 3) != 0) tables.back().key = textAt(columns.get(), 1);
    }
    tables_.tables = std::move(tables);
    version_ = version;
    return true;
}

}  // namespace pxtarvo::portable
