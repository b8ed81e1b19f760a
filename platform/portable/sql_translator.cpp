#include "platform/portable/sql_translator.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "platform/portable/sql_collation.h"
#include "platform/portable/sql_tokens.h"
#include "platform/runtime_error.h"
#include "platform/text.h"

namespace pxtarvo::portable {

namespace {

constexpr int noLiteral = -1;

/// Words that are never names unless they are quoted.
constexpr std::string_view reservedWords[] = {
    "ALL",    "AND",      "AS",     "ASC",    "BETWEEN", "BY",    "CASE",   "CREATE", "CROSS", "DELETE",
    "DESC",   "DISTINCT", "DROP",   "ELSE",   "END",     "EXEC",  "EXISTS", "FROM",   "FULL",  "GROUP",
    "HAVING", "IN",       "INNER",  "INSERT", "INTO",    "IS",    "JOIN",   "LEFT",   "LIKE",  "NOT",
    "NULL",   "ON",       "OR",     "ORDER",  "OUTER",   "RIGHT", "SELECT", "SET",    "TABLE", "THEN",
    "TOP",    "UNION",    "UPDATE", "VALUES", "WHEN",    "WHERE",
};

enum class FunctionResult { AsArgument, Number, Text, Date };

struct FunctionRule {
    std::string_view name;
    std::string_view translated;
    int fewest;
    int most;
    FunctionResult result;
    bool aggregate;
};

constexpr FunctionRule functionRules[] = {
    {"COUNT", "count", 1, 1, FunctionResult::Number, true},
    {"MAX", "max", 1, 1, FunctionResult::AsArgument, true},
    {"MIN", "min", 1, 1, FunctionResult::AsArgument, true},
    {"SUM", "sum", 1, 1, FunctionResult::Number, true},
    {"ISNULL", "ifnull", 2, 2, FunctionResult::AsArgument, false},
    {"GETDATE", nowFunction, 0, 0, FunctionResult::Date, false},
    {"SUBSTRING", "substr", 3, 3, FunctionResult::Text, false},
    {"REPLACE", "replace", 3, 3, FunctionResult::Text, false},
    {"LTRIM", "ltrim", 1, 1, FunctionResult::Text, false},
    {"RTRIM", "rtrim", 1, 1, FunctionResult::Text, false},
    {"ABS", "abs", 1, 1, FunctionResult::Number, false},
};

/// A part of the translated statement that gives a value.
struct Operand {
    ColumnDeclaration declaration{};
    bool number = false;      ///< a number, of whatever type
    bool condition = false;   ///< true or false, which no column holds
    bool simple = true;       ///< one word or one pair of parentheses: a suffix applies to all of it
    int literal = noLiteral;  ///< the value is this literal
    std::size_t start = 0;    ///< where it begins in the translated text
    std::size_t finish = 0;   ///< where it ends

    bool isText() const { return declaration.type == ColumnType::Text; }
    bool isNumber() const { return number || isNumeric(declaration.type); }
};

/// A table in a FROM clause.
struct Source {
    const SqlTable* table;
    std::string alias;
};

/// The tables that names in one SELECT, UPDATE or DELETE refer to.
struct Scope {
    std::vector<Source> sources;
    bool aggregated = false;
};

/// What a SELECT is part of.
enum class SelectRole { Result, Scalar, List, Existence };

[[noreturn]] void refuse(std::string text) {
    throw RuntimeError(ErrorNumber::SqlSyntax, std::move(text));
}

std::string quotedName(std::string_view name) {
    return '"' + replaced(name, "\"", "\"\"") + '"';
}

/// Counts how deep the parser is inside itself, and refuses what would take the stack.
class Nesting {
  public:
    explicit Nesting(int& depth) : depth_(depth) {
        constexpr int deepest = 300;
        if (depth_ == deepest)
            refuse("Alguna parte de la instrucción SQL está anidada con demasiada profundidad.");
        ++depth_;
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --depth_; }

  private:
    int& depth_;
};

class Translator {
  public:
    Translator(std::string_view statement, const SqlSchema& schema) : schema_(schema) {
        SqlTokenizer tokenizer(statement);
        do {
            tokens_.push_back(tokenizer.next());
            const SqlTokenKind kind = tokens_.back().kind;
            if (kind != SqlTokenKind::Number && kind != SqlTokenKind::Text) continue;
            literalTokens_.push_back(tokens_.size() - 1);
            result_.literals.emplace_back();
        } while (tokens_.back().kind != SqlTokenKind::End);
    }

    Translation translate() {
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

  private:
    // --- tokens

    const SqlToken& peek(std::size_t ahead = 0) const {
        return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
    }

    static bool isWord(const SqlToken& token, std::string_view word) {
        return token.kind == SqlTokenKind::Name && equalIgnoringAsciiCase(token.text, word);
    }
    static bool isSymbol(const SqlToken& token, std::string_view symbol) {
        return token.kind == SqlTokenKind::Symbol && token.text == symbol;
    }
    static bool isName(const SqlToken& token) {
        if (token.kind == SqlTokenKind::QuotedName) return true;
        return token.kind == SqlTokenKind::Name &&
               std::none_of(std::begin(reservedWords), std::end(reservedWords),
                            [&](std::string_view word) { return equalIgnoringAsciiCase(word, token.text); });
    }
    bool acceptWord(std::string_view word) {
        const bool found = isWord(peek(), word);
        if (found) ++at_;
        return found;
    }
    bool acceptSymbol(std::string_view symbol) {
        const bool found = isSymbol(peek(), symbol);
        if (found) ++at_;
        return found;
    }
    void expectWord(std::string_view word) {
        if (!acceptWord(word)) refuseToken();
    }
    void expectSymbol(std::string_view symbol) {
        if (!acceptSymbol(symbol)) refuseToken();
    }
    std::string expectName() {
        if (!isName(peek())) refuseToken();
        return plainText(tokens_[at_++]);
    }
    /// At the end of the statement the server names the last word before it.
    [[noreturn]] void refuseToken() const {
        const SqlToken& token = peek().kind == SqlTokenKind::End && at_ > 0 ? tokens_[at_ - 1] : peek();
        refuse("Sintaxis incorrecta cerca de '" + std::string(token.text) + "'.");
    }
    int literalOf(std::size_t token) const {
        const auto found = std::lower_bound(literalTokens_.begin(), literalTokens_.end(), token);
        return static_cast<int>(found - literalTokens_.begin());
    }

    // --- the translated text

    void put(std::string_view text) { result_.sql += text; }
    std::size_t length() const { return result_.sql.size(); }

    /// Makes the comparison or ordering that `operand` takes part in the server's own.
    void collate(const Operand& operand) {
        const std::string suffix = std::string(operand.simple ? "" : ")") + " COLLATE " + dealerCollation;
        result_.sql.insert(operand.finish, suffix);
        if (!operand.simple) result_.sql.insert(operand.start, "(");
    }
    void collateText(const Operand& operand) {
        if (operand.isText()) collate(operand);
    }

    /// A literal that meets a column is read as that column's type.
    void meet(const Operand& value, ColumnType column, bool assigned) {
        if (value.literal == noLiteral || (column != ColumnType::DateTime && !isNumeric(column))) return;
        result_.literals[value.literal].target = column;
        result_.literals[value.literal].assigned = assigned;
    }
    void meetEachOther(const Operand& left, const Operand& right) {
        meet(right, left.declaration.type, false);
        meet(left, right.declaration.type, false);
    }
    /// The type of a value that is now `whole`, now `other`; undeclared where they differ.
    static void widen(Operand& whole, const Operand& other) {
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
    /// Whether two operands compare as texts: no number and no date takes part.
    static bool comparesTexts(const Operand& left, const Operand& right) {
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

    // --- names

    const SqlTable& expectTable() {
        const std::string name = expectName();
        const SqlTable* table = schema_.table(name);
        if (!table)
            throw RuntimeError(ErrorNumber::NoSuchTable, "El nombre de objeto '" + name + "' no es válido.");
        return *table;
    }
    static const SqlColumn& columnOf(const SqlTable& table, const std::string& name) {
        const SqlColumn* column = table.column(name);
        if (!column) refuse("El nombre de columna '" + name + "' no es válido.");
        return *column;
    }

    Operand columnReference() {
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
        refuse("El nombre de columna '" + name + "' no es válido.");
    }

    Operand finished(Operand operand) const {
        operand.finish = length();
        return operand;
    }

    // --- conditions

    void condition() {
        const bool outer = std::exchange(conditionsAllowed_, true);
        if (!disjunction().condition) refuseToken();
        conditionsAllowed_ = outer;
    }
    Operand disjunction() {
        Operand left = conjunction();
        while (isWord(peek(), "OR")) left = join(left, " OR ", &Translator::conjunction);
        return left;
    }
    Operand conjunction() {
        Operand left = negation();
        while (isWord(peek(), "AND")) left = join(left, " AND ", &Translator::negation);
        return left;
    }
    Operand join(const Operand& left, std::string_view word, Operand (Translator::*next)()) {
        if (!left.condition) refuseToken();
        ++at_;
        put(word);
        if (!(this->*next)().condition) refuseToken();
        return finished({.condition = true, .simple = false, .start = left.start});
    }
    Operand negation() {
        const Nesting nesting(depth_);
        if (!acceptWord("NOT")) return predicate();
        const std::size_t start = length();
        put("NOT ");
        if (!negation().condition) refuseToken();
        return finished({.condition = true, .simple = false, .start = start});
    }

    Operand predicate() {
        const std::size_t start = length();
        if (acceptWord("EXISTS")) {
            put("EXISTS ");
            subSelect(SelectRole::Existence);
            return finished({.condition = true, .simple = false, .start = start});
        }
        const Operand left = value();
        if (left.condition) return left;
        if (!comparison(left)) return left;
        return finished({.condition = true, .simple = false, .start = start});
    }

    bool comparison(const Operand& left) {
        constexpr std::string_view operators[] = {"=", "<>", "!=", "<=", ">=", "<", ">"};
        if (std::any_of(std::begin(operators), std::end(operators),
                        [this](std::string_view known) { return isSymbol(peek(), known); })) {
            put(tokens_[at_++].text);
            const Operand right = value();
            meetEachOther(left, right);
            if (comparesTexts(left, right)) collate(left);
            return true;
        }
        if (acceptWord("IS")) {
            put(" IS ");
            if (acceptWord("NOT")) put("NOT ");
            expectWord("NULL");
            put("NULL");
            return true;
        }
        const bool negated = isWord(peek(), "NOT") && (isWord(peek(1), "IN") || isWord(peek(1), "BETWEEN"));
        if (negated) {
            ++at_;
            put(" NOT");
        }
        if (acceptWord("BETWEEN")) {
            put(" BETWEEN ");
            const Operand low = value();
            expectWord("AND");
            put(" AND ");
            const Operand high = value();
            meetEachOther(left, low);
            meetEachOther(left, high);
            if (comparesTexts(left, low) || comparesTexts(left, high)) collate(left);
            return true;
        }
        if (!acceptWord("IN")) return false;
        put(" IN ");
        if (isSymbol(peek(), "(") && isWord(peek(1), "SELECT")) {
            subSelect(SelectRole::List);
        } else {
            expectSymbol("(");
            put("(");
            do {
                if (result_.sql.back() != '(') put(", ");
                meetEachOther(left, value());
            } while (acceptSymbol(","));
            expectSymbol(")");
            put(")");
        }
        collateText(left);
        return true;
    }

    // --- values

    /// A value where no condition may stand.
    Operand plainValue() {
        const bool outer = std::exchange(conditionsAllowed_, false);
        const Operand operand = value();
        conditionsAllowed_ = outer;
        return operand;
    }

    Operand value() {
        Operand left = product();
        while (isSymbol(peek(), "+") || isSymbol(peek(), "-")) {
            const bool sum = isSymbol(tokens_[at_++], "+");
            const std::size_t mark = length();
            if (left.condition) refuseToken();
            put(sum ? " + " : " - ");
            const Operand right = product();
            if (right.condition) refuseToken();
            const bool texts =
                sum && (left.isText() || right.isText()) && !left.isNumber() && !right.isNumber();
            if (texts) result_.sql.replace(mark, 3, " || ");
            Operand whole{.number = !texts, .simple = false, .start = left.start};
            if (texts) whole.declaration.type = ColumnType::Text;
            left = finished(whole);
        }
        return left;
    }

    Operand product() {
        Operand left = signedValue();
        while (isSymbol(peek(), "*") || isSymbol(peek(), "/") || isSymbol(peek(), "%")) {
            if (left.condition) refuseToken();
            put(tokens_[at_++].text);
            if (signedValue().condition) refuseToken();
            left = finished({.number = true, .simple = false, .start = left.start});
        }
        return left;
    }

    Operand signedValue() {
        const Nesting nesting(depth_);
        if (acceptSymbol("+")) return signedValue();
        if (!acceptSymbol("-")) return primary();
        if (peek().kind == SqlTokenKind::Number) {
            result_.literals[literalOf(at_)].negated = true;
            return primary();
        }
        const std::size_t start = length();
        put("- ");
        if (signedValue().condition) refuseToken();
        return finished({.number = true, .simple = false, .start = start});
    }

    Operand primary() {
        const std::size_t start = length();
        const SqlToken& token = peek();
        if (token.kind == SqlTokenKind::Number || token.kind == SqlTokenKind::Text) {
            const int literal = literalOf(at_++);
            put("?" + std::to_string(literal + 1));
            Operand operand{.number = token.kind == SqlTokenKind::Number, .literal = literal, .start = start};
            if (token.kind == SqlTokenKind::Text) operand.declaration.type = ColumnType::Text;
            return finished(operand);
        }
        if (isSymbol(token, "(")) {
            if (isWord(peek(1), "SELECT")) return subSelect(SelectRole::Scalar);
            ++at_;
            put("(");
            Operand inner = conditionsAllowed_ ? disjunction() : value();
            expectSymbol(")");
            put(")");
            inner.simple = true;
            inner.start = start;
            return finished(inner);
        }
        if (acceptWord("NULL")) {
            put("NULL");
            return finished({.start = start});
        }
        if (isWord(token, "CASE")) return caseValue();
        if (token.kind == SqlTokenKind::Name && isSymbol(peek(1), "(")) return functionCall();
        return columnReference();
    }

    Operand caseValue() {
        const std::size_t start = length();
        expectWord("CASE");
        put("CASE ");
        const bool simple = !isWord(peek(), "WHEN");
        Operand base;
        bool texts = false;
        if (simple) {
            base = plainValue();
            put(" ");
        }
        Operand whole{.start = start};
        const auto branch = [&] { widen(whole, plainValue()); };
        if (!isWord(peek(), "WHEN")) refuseToken();
        while (acceptWord("WHEN")) {
            put("WHEN ");
            if (simple) {
                const Operand wanted = plainValue();
                meetEachOther(base, wanted);
                texts = texts || comparesTexts(base, wanted);
            } else {
                condition();
            }
            expectWord("THEN");
            put(" THEN ");
            branch();
            put(" ");
        }
        if (acceptWord("ELSE")) {
            put("ELSE ");
            branch();
            put(" ");
        }
        expectWord("END");
        put("END");
        if (texts) collate(base);
        return finished(whole);
    }

    Operand functionCall() {
        const std::size_t start = length();
        const SqlToken name = tokens_[at_++];
        const auto* rule = std::find_if(
            std::begin(functionRules), std::end(functionRules),
            [&](const FunctionRule& known) { return equalIgnoringAsciiCase(known.name, name.text); });
        if (rule == std::end(functionRules)) {
            refuse("'" + std::string(name.text) + "' no es un nombre de función integrada reconocido.");
        }
        if (rule->aggregate && !scopes_.empty()) scopes_.back().aggregated = true;
        put(rule->translated);
        expectSymbol("(");
        put("(");
        Operand whole{.start = start};
        int arguments = 0;
        if (rule->name == "COUNT" && acceptSymbol("*")) {
            put("*");
            arguments = 1;
        } else if (!isSymbol(peek(), ")")) {
            if (rule->aggregate && acceptWord("DISTINCT")) put("DISTINCT ");
            Operand first;
            do {
                if (arguments++ > 0) put(", ");
                const Operand argument = plainValue();
                if (arguments == 1) first = argument;
                if (rule->result != FunctionResult::AsArgument) continue;
                meet(argument, first.declaration.type, true);
                if (arguments == 1 || (whole.declaration == ColumnDeclaration{} && !whole.number)) {
                    whole.declaration = argument.declaration;
                    whole.number = argument.number;
                }
            } while (acceptSymbol(","));
            if (rule->aggregate) collateText(first);
        }
        if (arguments < rule->fewest || arguments > rule->most) {
            refuse("La función " + std::string(name.text) + " necesita " + std::to_string(rule->most) +
                   " argumentos.");
        }
        expectSymbol(")");
        put(")");
        if (rule->result == FunctionResult::Number) whole.number = true;
        if (rule->result == FunctionResult::Text) whole.declaration.type = ColumnType::Text;
        if (rule->result == FunctionResult::Date) whole.declaration.type = ColumnType::DateTime;
        return finished(whole);
    }

    // --- SELECT

    Operand subSelect(SelectRole role) {
        const std::size_t start = length();
        expectSymbol("(");
        put("(");
        expectWord("SELECT");
        const bool outer = std::exchange(conditionsAllowed_, false);
        Operand operand = select(role);
        conditionsAllowed_ = outer;
        expectSymbol(")");
        put(")");
        operand.start = start;
        return finished(operand);
    }

    /// What the words of a SELECT, up to its end, say before they are translated.
    struct Outline {
        Scope scope;
        bool grouped = false;
    };
    /// Names in the list of values refer to tables that are only named after it.
    Outline readAhead() {
        Outline outline;
        const std::size_t first = at_;
        bool inFrom = false;
        int depth = 0;
        for (; peek().kind != SqlTokenKind::End; ++at_) {
            if (isSymbol(peek(), "(")) ++depth;
            if (isSymbol(peek(), ")") && --depth < 0) break;
            if (depth > 0) continue;
            if (isWord(peek(), "WHERE") || isWord(peek(), "GROUP") || isWord(peek(), "ORDER")) inFrom = false;
            if (isWord(peek(), "GROUP")) outline.grouped = true;
            if (isWord(peek(), "FROM")) inFrom = true;
            if (!inFrom || !(isWord(peek(), "FROM") || isWord(peek(), "JOIN") || isSymbol(peek(), ",")))
                continue;
            ++at_;
            const SqlTable& table = expectTable();
            std::string alias = table.name;
            if (acceptWord("AS") || isName(peek())) alias = expectName();
            outline.scope.sources.push_back({&table, std::move(alias)});
            --at_;
        }
        at_ = first;
        return outline;
    }

    Operand select(SelectRole role) {
        Outline outline = readAhead();
        scopes_.push_back(std::move(outline.scope));
        const std::size_t start = length();
        const bool distinct = acceptWord("DISTINCT");
        if (!distinct) acceptWord("ALL");
        const bool nested =
            role == SelectRole::Scalar && (distinct || outline.grouped || isWord(peek(), "TOP"));
        if (nested) put("SELECT " + std::string(singleValueFunction) + "(v) FROM (");
        put(distinct ? "SELECT DISTINCT " : "SELECT ");
        int limit = noLiteral;
        if (acceptWord("TOP")) {
            if (peek().kind != SqlTokenKind::Number) refuseToken();
            limit = literalOf(at_++);
        }
        std::vector<std::pair<std::string, Operand>> items;
        const bool starred = valueList(role, distinct, nested, items);
        if (acceptWord("FROM")) sources();
        if (acceptWord("WHERE")) {
            put(" WHERE ");
            condition();
        }
        groupBy();
        orderBy(items, role == SelectRole::Result && !starred);
        if (limit != noLiteral) put(" LIMIT ?" + std::to_string(limit + 1));
        if (nested) put(")");
        scopes_.pop_back();
        if (role == SelectRole::Result && !starred) {
            for (const auto& item : items) result_.columns.push_back(item.second.declaration);
        }
        Operand whole = items.empty() ? Operand{} : items.front().second;
        whole.simple = true;
        whole.literal = noLiteral;
        whole.start = start;
        return finished(whole);
    }

    /// Fills `items` with the alias and the value of each column; true when there are "*" columns.
    bool valueList(SelectRole role, bool distinct, bool nested,
                   std::vector<std::pair<std::string, Operand>>& items) {
        bool starred = false;
        int count = 0;
        do {
            if (count++ > 0) put(", ");
            const bool allOfOne = isName(peek()) && isSymbol(peek(1), ".") && isSymbol(peek(2), "*");
            if (allOfOne || isSymbol(peek(), "*")) {
                if (distinct) refuseToken();
                if (scopes_.back().sources.empty()) refuseToken();
                starred = true;
                if (allOfOne) put(quotedName(expectName()) + '.');
                if (allOfOne) ++at_;
                ++at_;
                put("*");
                continue;
            }
            items.push_back(oneValue(role, distinct, nested));
        } while (acceptSymbol(","));
        if ((role == SelectRole::Scalar || role == SelectRole::List) && (starred || count != 1)) {
            refuse(
                "Sólo se puede especificar una expresión en la lista de selección cuando la subconsulta no "
                "se "
                "especifica con EXISTS.");
        }
        return starred;
    }

    std::pair<std::string, Operand> oneValue(SelectRole role, bool distinct, bool nested) {
        const SqlToken first = peek();
        const std::size_t begin = at_;
        scopes_.back().aggregated = false;
        Operand operand = plainValue();
        if (operand.condition) refuseToken();
        const bool bareColumn =
            isName(first) && (at_ == begin + 1 || (at_ == begin + 3 && isSymbol(tokens_[begin + 1], ".")));
        std::string alias = bareColumn ? plainText(tokens_[at_ - 1]) : std::string();
        if (role == SelectRole::Scalar && !nested && !scopes_.back().aggregated) {
            result_.sql.insert(operand.start, std::string(singleValueFunction) + "(");
            put(")");
        } else if (distinct && operand.isText()) {
            collate(operand);
        }
        const bool named = acceptWord("AS") || isName(peek());
        if (named) alias = expectName();
        if (nested) {
            put(" AS v");
        } else if (role == SelectRole::Result && (named || !bareColumn || (distinct && operand.isText()))) {
            put(" AS " + quotedName(alias));
        }
        return {std::move(alias), operand};
    }

    void sources() {
        put(" FROM ");
        source();
        for (;;) {
            if (acceptSymbol(",")) {
                put(", ");
                source();
            } else if (acceptWord("CROSS")) {
                expectWord("JOIN");
                put(" CROSS JOIN ");
                source();
            } else {
                const bool left = acceptWord("LEFT");
                if (left) acceptWord("OUTER");
                const bool inner = !left && acceptWord("INNER");
                if (!acceptWord("JOIN")) {
                    if (left || inner) refuseToken();
                    return;
                }
                put(left ? " LEFT JOIN " : " INNER JOIN ");
                source();
                expectWord("ON");
                put(" ON ");
                condition();
            }
        }
    }
    void source() {
        put(quotedName(expectTable().name));
        if (acceptWord("AS") || isName(peek())) put(" AS " + quotedName(expectName()));
    }

    void groupBy() {
        if (!acceptWord("GROUP")) return;
        expectWord("BY");
        put(" GROUP BY ");
        do {
            if (!result_.sql.ends_with(" BY ")) put(", ");
            collateText(plainValue());
        } while (acceptSymbol(","));
        if (!acceptWord("HAVING")) return;
        put(" HAVING ");
        condition();
    }

    void orderBy(const std::vector<std::pair<std::string, Operand>>& items, bool positionsKnown) {
        if (!acceptWord("ORDER")) return;
        expectWord("BY");
        put(" ORDER BY ");
        do {
            if (!result_.sql.ends_with(" BY ")) put(", ");
            orderTerm(items, positionsKnown);
            if (acceptWord("DESC")) {
                put(" DESC");
            } else {
                acceptWord("ASC");
            }
        } while (acceptSymbol(","));
    }

    void orderTerm(const std::vector<std::pair<std::string, Operand>>& items, bool positionsKnown) {
        if (peek().kind == SqlTokenKind::Number) {
            const std::string_view digits = peek().text;
            std::size_t position = 0;
            std::from_chars(digits.data(), digits.data() + digits.size(), position);
            if (!positionsKnown || position < 1 || position > items.size()) {
                refuse("El número de posición " + std::string(digits) +
                       " de ORDER BY no corresponde a ninguna columna de la lista de selección.");
            }
            result_.literals[literalOf(at_++)].bound = false;
            orderByItem(std::to_string(position), items[position - 1].second);
            return;
        }
        if (isName(peek()) && !isSymbol(peek(1), ".") && !isSymbol(peek(1), "(")) {
            const std::string name = plainText(peek());
            const auto item = std::find_if(items.begin(), items.end(), [&](const auto& known) {
                return equalIgnoringAsciiCase(known.first, name);
            });
            if (item != items.end()) {
                ++at_;
                orderByItem(quotedName(item->first), item->second);
                return;
            }
        }
        collateText(plainValue());
    }
    void orderByItem(std::string_view term, const Operand& item) {
        put(term);
        if (item.isText()) put(std::string(" COLLATE ") + dealerCollation);
    }

    // --- statements that write

    void whereClause() {
        if (acceptWord("WHERE")) {
            put(" WHERE ");
            condition();
        }
    }

    void assign(const SqlColumn& column) { meet(plainValue(), column.declaration.type, true); }

    void insertStatement() {
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
    [[noreturn]] static void refuseValueCount() {
        refuse(
            "El número de valores de la cláusula VALUES no coincide con el número de columnas de la "
            "instrucción "
            "INSERT.");
    }

    void updateStatement() {
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

    void deleteStatement() {
        acceptWord("FROM");
        const SqlTable& table = expectTable();
        scopes_.push_back({{{&table, table.name}}});
        put("DELETE FROM " + quotedName(table.name));
        whereClause();
    }

    const SqlSchema& schema_;
    std::vector<SqlToken> tokens_;
    std::vector<std::size_t> literalTokens_;  ///< places in tokens_
    std::size_t at_ = 0;
    std::vector<Scope> scopes_;  ///< the innermost last
    bool conditionsAllowed_ = false;
    int depth_ = 0;
    Translation result_;
};

}  // namespace

bool Translation::servesShape() const {
    return std::all_of(literals.begin(), literals.end(), [](const LiteralUse& use) { return use.bound; });
}

Translation translateStatement(std::string_view statement, const SqlSchema& schema) {
    return Translator(statement, schema).translate();
}

}  // namespace pxtarvo::portable
