#include "platform/portable/dialect/sql_grammar.h"

#include <iterator>

#include "platform/portable/dialect/sql_collation.h"
#include "platform/portable/dialect/sql_errors.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo::portable {

namespace {

/// Words that are never names unless they are quoted.
constexpr std::string_view reservedWords[] = {
    "ALL",    "AND",      "AS",     "ASC",    "BETWEEN", "BY",    "CASE",   "CREATE", "CROSS", "DELETE",
    "DESC",   "DISTINCT", "DROP",   "ELSE",   "END",     "EXEC",  "EXISTS", "FROM",   "FULL",  "GROUP",
    "HAVING", "IN",       "INNER",  "INSERT", "INTO",    "IS",    "JOIN",   "LEFT",   "LIKE",  "NOT",
    "NULL",   "ON",       "OR",     "ORDER",  "OUTER",   "RIGHT", "SELECT", "SET",    "TABLE", "THEN",
    "TOP",    "UNION",    "UPDATE", "VALUES", "WHEN",    "WHERE",
};

}  // namespace

void refuse(std::string text) {
    throw RuntimeError(ErrorNumber::SqlSyntax, std::move(text));
}

std::string quotedName(std::string_view name) {
    return '"' + replaced(name, "\"", "\"\"") + '"';
}

SqlGrammar::SqlGrammar(std::string_view statement, const SqlSchema& schema) : schema_(schema) {
    SqlTokenizer tokenizer(statement);
    do {
        tokens_.push_back(tokenizer.next());
        const SqlTokenKind kind = tokens_.back().kind;
        if (kind != SqlTokenKind::Number && kind != SqlTokenKind::Text) continue;
        literalTokens_.push_back(tokens_.size() - 1);
        result_.literals.emplace_back();
    } while (tokens_.back().kind != SqlTokenKind::End);
}

Translation translateStatement(std::string_view statement, const SqlSchema& schema) {
    return SqlGrammar(statement, schema).translate();
}

Translation SqlGrammar::translate() {
    if (acceptWord("SELECT")) {
        select(SelectRole::Result);
    } else if (acceptWord("INSERT")) {
        insertStatement();
    } else if (acceptWord("UPDATE")) {
        updateStatement();
    } else if (acceptWord("DELETE")) {
        deleteStatement();
    } else {
        refuseToken();
    }
    acceptSymbol(";");
    if (peek().kind != SqlTokenKind::End) refuseToken();
    return std::move(result_);
}

bool SqlGrammar::isName(const SqlToken& token) {
    if (token.kind == SqlTokenKind::QuotedName) return true;
    return token.kind == SqlTokenKind::Name &&
           std::none_of(std::begin(reservedWords), std::end(reservedWords),
                        [&](std::string_view word) { return equalIgnoringAsciiCase(word, token.text); });
}

bool SqlGrammar::acceptWord(std::string_view word) {
    const bool found = isWord(peek(), word);
    if (found) ++at_;
    return found;
}

bool SqlGrammar::acceptSymbol(std::string_view symbol) {
    const bool found = isSymbol(peek(), symbol);
    if (found) ++at_;
    return found;
}

std::string SqlGrammar::expectName() {
    if (!isName(peek())) refuseToken();
    return plainText(tokens_[at_++]);
}

void SqlGrammar::refuseToken() const {
    const SqlToken& token = peek().kind == SqlTokenKind::End && at_ > 0 ? tokens_[at_ - 1] : peek();
    throw wrongSyntaxNear(token.text);
}

int SqlGrammar::literalOf(std::size_t token) const {
    const auto found = std::lower_bound(literalTokens_.begin(), literalTokens_.end(), token);
    return static_cast<int>(found - literalTokens_.begin());
}

void SqlGrammar::collate(const Operand& operand) {
    const std::string suffix = std::string(operand.simple ? "" : ")") + " COLLATE " + dealerCollation;
    result_.sql.insert(operand.finish, suffix);
    if (!operand.simple) result_.sql.insert(operand.start, "(");
}

void SqlGrammar::meet(const Operand& value, ColumnType column, bool assigned) {
    if (value.literal == noLiteral || (column != ColumnType::DateTime && !isNumeric(column))) return;
    result_.literals[value.literal].target = column;
    result_.literals[value.literal].assigned = assigned;
}

void SqlGrammar::meetEachOther(const Operand& left, const Operand& right) {
    meet(right, left.declaration.type, false);
    meet(left, right.declaration.type, false);
}

void SqlGrammar::widen(Operand& whole, const Operand& other) {
    const bool otherIsNull = other.declaration == ColumnDeclaration{} && !other.number;
    if (otherIsNull) return;
    const bool wholeIsNull = whole.declaration == ColumnDeclaration{} && !whole.number;
    if (wholeIsNull) {
        whole.declaration = other.declaration;
        whole.number = other.number;
    } else if (whole.declaration != other.declaration) {
        whole.number = whole.isNumber() && other.isNumber();
        whole.declaration = {};
    }
}

bool SqlGrammar::comparesTexts(const Operand& left, const Operand& right) {
    const auto other = [](const Operand& operand) {
        return operand.isNumber() || operand.declaration.type == ColumnType::DateTime;
    };
    if (left.literal != noLiteral || right.literal != noLiteral) {
        // a text column keeps its own index even when a number is looked for
        const Operand& column = left.literal != noLiteral ? right : left;
        return column.isText() || (left.isText() && right.isText());
    }
    return (left.isText() || right.isText()) && !other(left) && !other(right);
}

const SqlTable& SqlGrammar::expectTable() {
    const std::string name = expectName();
    const SqlTable* table = schema_.table(name);
    if (!table) throw noSuchTable(name);
    return *table;
}

const SqlColumn& SqlGrammar::columnOf(const SqlTable& table, const std::string& name) {
    const SqlColumn* column = table.column(name);
    if (!column) throw noSuchColumn(name);
    return *column;
}

Operand SqlGrammar::columnReference() {
    const std::size_t start = length();
    std::string name = expectName();
    if (acceptSymbol(".")) {
        const std::string qualifier = std::move(name);
        name = expectName();
        for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
            for (const Source& source : scope->sources) {
                if (!equalIgnoringAsciiCase(source.alias, qualifier)) continue;
                const SqlColumn& column = columnOf(*source.table, name);
                put(quotedName(source.alias) + '.' + quotedName(column.name));
                return finished({.declaration = column.declaration, .start = start});
            }
        }
        refuse("El identificador formado por varias partes '" + qualifier + "." + name +
               "' no se pudo enlazar.");
    }
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
        const SqlColumn* found = nullptr;
        for (const Source& source : scope->sources) {
            const SqlColumn* column = source.table->column(name);
            if (column && found) refuse("El nombre de columna '" + name + "' es ambiguo.");
            if (column) found = column;
        }
        if (!found) continue;
        put(quotedName(found->name));
        return finished({.declaration = found->declaration, .start = start});
    }
    throw noSuchColumn(name);
}

Operand SqlGrammar::finished(Operand operand) const {
    operand.finish = length();
    return operand;
}

}  // namespace pxtarvo::portable
