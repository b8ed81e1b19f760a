#include "devhost/exchange/stored_columns.h"

#include <charconv>

namespace pxtarvo::devhost {

namespace {

/// The 30 of "VARCHAR(30)", 0 where there is none.
std::size_t sizeIn(std::string_view declaration) {
    std::size_t size = 0;
    const std::size_t bracket = declaration.find('(');
    if (bracket == declaration.npos) return size;
    const std::string_view digits = declaration.substr(bracket + 1);
    std::from_chars(digits.data(), digits.data() + digits.size(), size);
    return size;
}

std::string_view textAt(sqlite3_stmt* statement, int column) {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text ? text : "";
}

}  // namespace

std::vector<StoredColumn> storedColumns(const portable::SqliteConnection& connection,
                                        std::string_view table) {
    const auto statement =
        portable::prepare(connection.handle(), "SELECT name, type, pk FROM pragma_table_info(?)");
    sqlite3_bind_text64(statement.get(), 1, table.data(), table.size(), SQLITE_STATIC, SQLITE_UTF8);
    std::vector<StoredColumn> columns;
    while (portable::step(statement.get())) {
        const std::string_view declaration = textAt(statement.get(), 1);
        StoredColumn column{std::string(textAt(statement.get(), 0)),
                            portable::readDeclaration(declaration).type};
        if (column.type == portable::ColumnType::Text) column.textSize = sizeIn(declaration);
        column.key = sqlite3_column_int(statement.get(), 2) != 0;
        columns.push_back(std::move(column));
    }
    return columns;
}

}  // namespace pxtarvo::devhost
