#include "tests/common/database_state.h"

#include <cstdio>

#include "platform/portable/sqlite/sqlite_connection.h"
#include "platform/values/conversion.h"

namespace pxtarvo::tests {

std::vector<std::string> rowsOf(Connection& connection, std::string_view query) {
    std::vector<std::string> lines;
    const ObjectRef<Recordset> rows = connection.Execute(query, adOptionUnspecified);
    for (; !rows->Eof(); rows->MoveNext()) {
        std::string& line = lines.emplace_back();
        for (std::int32_t column = 0; column < rows->FieldCount(); ++column) {
            const Variant value = rows->Fields(column);
            if (column > 0) line += '|';
            line += value.isNull() ? "NULL" : joinedText(value, spanishLocale());
        }
    }
    return lines;
}

Tables tablesOf(sqlite3* database) {
    Tables all;
    const auto tables = portable::prepare(
        database, "SELECT sql, name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite%'");
    const auto text = [](sqlite3_stmt* row, int column) {
        const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
        return std::string(bytes ? bytes : "", static_cast<std::size_t>(sqlite3_column_bytes(row, column)));
    };
    while (portable::step(tables.get())) {
        std::vector<std::string>& lines = all[text(tables.get(), 0)];
        const auto rows =
            portable::prepare(database, "SELECT * FROM " + text(tables.get(), 1) + " ORDER BY rowid");
        while (portable::step(rows.get())) {
            std::string& line = lines.emplace_back();
            for (int column = 0; column < sqlite3_column_count(rows.get()); ++column) {
                const int type = sqlite3_column_type(rows.get(), column);
                line += '|' + std::to_string(type) + ':';
                if (type == SQLITE_FLOAT) {
                    char digits[32];
                    std::snprintf(digits, sizeof digits, "%.17g", sqlite3_column_double(rows.get(), column));
                    line += digits;
                } else {
                    line += text(rows.get(), column);
                }
            }
        }
    }
    return all;
}

Tables tablesOf(Connection& connection) {
    return tablesOf(dynamic_cast<portable::SqliteConnection&>(connection).handle());
}

Tables tablesOf(const std::string& path) {
    sqlite3* opened = nullptr;
    sqlite3_open(path.c_str(), &opened);
    return tablesOf(portable::DatabaseHandle(opened).get());
}

bool transactionOpen(Connection& connection) {
    try {
        connection.BeginTrans();
    } catch (const RuntimeError&) {
        return true;
    }
    connection.RollbackTrans();
    return false;
}

}  // namespace pxtarvo::tests
