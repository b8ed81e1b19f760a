// INSERT, UPDATE and DELETE.

#include "platform/portable/dialect/sql_grammar.h"

namespace pxtarvo::portable {

void SqlGrammar::whereClause() {
    if (acceptWord("WHERE")) {
        put(" WHERE ");
        condition();
    }
}

void SqlGrammar::insertStatement() {
    acceptWord("INTO");
    const SqlTable& table = expectTable();
    put("INSERT INTO " + quotedName(table.name));
    std::vector<const SqlColumn*> columns;
    if (acceptSymbol("(")) {
        put(" (");
        do {
            if (!columns.empty()) put(", ");
            columns.push_back(&columnOf(table, expectName()));
            put(quotedName(columns.back()->name));
        } while (acceptSymbol(","));
        expectSymbol(")");
        put(")");
    } else {
        for (const SqlColumn& column : table.columns) columns.push_back(&column);
    }
    if (acceptWord("SELECT")) {
        put(" ");
        select(SelectRole::Existence);
        return;
    }
    expectWord("VALUES");
    put(" VALUES ");
    do {
        if (result_.sql.back() == ')') put(", ");
        expectSymbol("(");
        put("(");
        std::size_t count = 0;
        do {
            if (count > 0) put(", ");
            if (count == columns.size()) refuseValueCount();
            assign(*columns[count++]);
        } while (acceptSymbol(","));
        if (count != columns.size()) refuseValueCount();
        expectSymbol(")");
        put(")");
    } while (acceptSymbol(","));
}

void SqlGrammar::refuseValueCount() {
    refuse(
        "El número de valores de la cláusula VALUES no coincide con el número de columnas de la "
        "instrucción INSERT.");
}

void SqlGrammar::updateStatement() {
    const SqlTable& table = expectTable();
    scopes_.push_back({{{&table, table.name}}});
    put("UPDATE " + quotedName(table.name) + " SET ");
    expectWord("SET");
    bool first = true;
    do {
        if (!std::exchange(first, false)) put(", ");
        const SqlColumn& column = columnOf(table, expectName());
        expectSymbol("=");
        put(quotedName(column.name) + " = ");
        assign(column);
    } while (acceptSymbol(","));
    whereClause();
}

void SqlGrammar::deleteStatement() {
    acceptWord("FROM");
    const SqlTable& table = expectTable();
    scopes_.push_back({{{&table, table.name}}});
    put("DELETE FROM " + quotedName(table.name));
    whereClause();
}

}  // namespace pxtarvo::portable
