// SELECT, as a statement and inside others.

#include <algorithm>
#include <charconv>

#include "platform/portable/dialect/sql_collation.h"
#include "platform/portable/dialect/sql_grammar.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

/// What stands around a value of a scalar sub-select's rows: it gives the one row's, Null for none. SQLite
/// takes a plain column beside an aggregate from one of the rows.
constexpr std::string_view beforeOnlyValue = "CASE count(*) WHEN 1 THEN ";
const std::string afterOnlyValue = joined({" WHEN 0 THEN NULL ELSE ", secondValueFunction, "() END"});

}  // namespace

Operand SqlGrammar::subSelect(SelectRole role) {
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

bool SqlGrammar::asksForKey(const SqlTable& table) const {
    const SqlToken& key = peek(1);
    const SqlToken& value = peek(3);
    const bool comparesKey = !table.key.empty() && isName(key) && isSymbol(peek(2), "=") &&
                             isSymbol(peek(4), ")") && equalIgnoringAsciiCase(plainText(key), table.key);
    return comparesKey && isName(value) && !table.column(plainText(value));
}

SqlGrammar::Outline SqlGrammar::readAhead() {
    Outline outline;
    const std::size_t first = at_;
    bool inFrom = false;
    int depth = 0;
    int subSelect = 0;  // the depth at which one was opened
    for (; peek().kind != SqlTokenKind::End; ++at_) {
        if (isSymbol(peek(), "(") && ++depth > 0 && subSelect == 0 && isWord(peek(1), "SELECT"))
            subSelect = depth;
        if (isSymbol(peek(), ")")) {
            if (subSelect == depth) subSelect = 0;
            if (--depth < 0) break;
        }
        if (subSelect == 0 && isAggregate(peek()) && isSymbol(peek(1), "(")) outline.scope.aggregated = true;
        if (depth > 0) continue;
        if (isWord(peek(), "WHERE") || isWord(peek(), "GROUP") || isWord(peek(), "ORDER")) inFrom = false;
        if (isWord(peek(), "GROUP")) outline.grouped = true;
        if (isWord(peek(), "WHERE") && outline.scope.sources.size() == 1) {
            outline.scope.oneRow = asksForKey(*outline.scope.sources.front().table);
        }
        if (isWord(peek(), "FROM")) inFrom = true;
        if (!inFrom || !(isWord(peek(), "FROM") || isWord(peek(), "JOIN") || isSymbol(peek(), ","))) continue;
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

Operand SqlGrammar::select(SelectRole role) {
    Outline outline = readAhead();
    scopes_.push_back(std::move(outline.scope));
    const std::size_t start = length();
    const bool distinct = acceptWord("DISTINCT");
    if (!distinct) acceptWord("ALL");
    const bool nested = role == SelectRole::Scalar && (distinct || outline.grouped || isWord(peek(), "TOP"));
    if (nested) put(joined({"SELECT ", beforeOnlyValue, "v", afterOnlyValue, " FROM ("}));
    put(distinct ? "SELECT DISTINCT " : "SELECT ");
    int limit = noLiteral;
    if (acceptWord("TOP")) {
        if (peek().kind != SqlTokenKind::Number) refuseToken();
        limit = literalOf(at_++);
    }
    std::vector<std::pair<std::string, Operand>> items;
    const bool starred = valueList(role, distinct, nested, items);
    if (acceptWord("FROM")) sources();
    whereClause();
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

bool SqlGrammar::valueList(SelectRole role, bool distinct, bool nested,
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
            "Sólo se puede especificar una expresión en la lista de selección cuando la subconsulta no se "
            "especifica con EXISTS.");
    }
    return starred;
}

std::pair<std::string, Operand> SqlGrammar::oneValue(SelectRole role, bool distinct, bool nested) {
    const SqlToken first = peek();
    const std::size_t begin = at_;
    const Scope& scope = scopes_.back();
    const bool counted = role == SelectRole::Scalar && !nested && !scope.aggregated && !scope.oneRow;
    if (counted) put(beforeOnlyValue);
    Operand operand = plainValue();
    if (operand.condition) refuseToken();
    if (counted) put(afterOnlyValue);
    const bool bareColumn =
        isName(first) && (at_ == begin + 1 || (at_ == begin + 3 && isSymbol(tokens_[begin + 1], ".")));
    std::string alias = bareColumn ? plainText(tokens_[at_ - 1]) : std::string();
    if (distinct && operand.isText()) collate(operand);
    const bool named = acceptWord("AS") || isName(peek());
    if (named) alias = expectName();
    if (nested) {
        put(" AS v");
    } else if (role == SelectRole::Result && (named || !bareColumn || (distinct && operand.isText()))) {
        put(" AS " + quotedName(alias));
    }
    return {std::move(alias), operand};
}

void SqlGrammar::sources() {
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

void SqlGrammar::source() {
    put(quotedName(expectTable().name));
    if (acceptWord("AS") || isName(peek())) put(" AS " + quotedName(expectName()));
}

void SqlGrammar::groupBy() {
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

void SqlGrammar::orderBy(const std::vector<std::pair<std::string, Operand>>& items, bool positionsKnown) {
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

void SqlGrammar::orderTerm(const std::vector<std::pair<std::string, Operand>>& items, bool positionsKnown) {
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

void SqlGrammar::orderByItem(std::string_view term, const Operand& item) {
    put(term);
    if (item.isText()) put(std::string(" COLLATE ") + dealerCollation);
}

}  // namespace pxtarvo::portable
