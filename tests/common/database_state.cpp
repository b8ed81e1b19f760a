#include "tests/common/database_state.h"

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
