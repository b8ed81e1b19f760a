// Conditions: comparisons, IN, BETWEEN, EXISTS, IS NULL, and what joins them.

#include <algorithm>
#include <iterator>

#include "platform/portable/dialect/sql_grammar.h"

namespace pxtarvo::portable {

void SqlGrammar::condition() {
    const bool outer = std::exchange(conditionsAllowed_, true);
    if (!disjunction().condition) refuseToken();
    conditionsAllowed_ = outer;
}

Operand SqlGrammar::disjunction() {
    Operand left = conjunction();
    while (isWord(peek(), "OR")) left = join(left, " OR ", &SqlGrammar::conjunction);
    return left;
}

Operand SqlGrammar::conjunction() {
    Operand left = negation();
    while (isWord(peek(), "AND")) left = join(left, " AND ", &SqlGrammar::negation);
    return left;
}

Operand SqlGrammar::join(const Operand& left, std::string_view word, Operand (SqlGrammar::*next)()) {
    if (!left.condition) refuseToken();
    ++at_;
    put(word);
    if (!(this->*next)().condition) refuseToken();
    return finished({.condition = true, .simple = false, .start = left.start});
}

Operand SqlGrammar::negation() {
    const Nesting nesting(depth_);
    if (!acceptWord("NOT")) return predicate();
    const std::size_t start = length();
    put("NOT ");
    if (!negation().condition) refuseToken();
    return finished({.condition = true, .simple = false, .start = start});
}

Operand SqlGrammar::predicate() {
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

bool SqlGrammar::comparison(const Operand& left) {
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

}  // namespace pxtarvo::portable
