// Values: arithmetic, joined texts, literals, CASE, functions.

#include <algorithm>
#include <iterator>

#include "platform/portable/dialect/sql_grammar.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

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

/// nullptr for a name that is no function's.
const FunctionRule* ruleOf(const SqlToken& name) {
    const auto found = std::ranges::find_if(functionRules, [&](const FunctionRule& known) {
        return equalIgnoringAsciiCase(known.name, name.text);
    });
    return found == std::end(functionRules) ? nullptr : found;
}

}  // namespace

bool SqlGrammar::isAggregate(const SqlToken& name) {
    const FunctionRule* const rule = name.kind == SqlTokenKind::Name ? ruleOf(name) : nullptr;
    return rule && rule->aggregate;
}

Operand SqlGrammar::plainValue() {
    const bool outer = std::exchange(conditionsAllowed_, false);
    const Operand operand = value();
    conditionsAllowed_ = outer;
    return operand;
}

Operand SqlGrammar::value() {
    Operand left = product();
    while (isSymbol(peek(), "+") || isSymbol(peek(), "-")) {
        const bool sum = isSymbol(tokens_[at_++], "+");
        const std::size_t mark = length();
        if (left.condition) refuseToken();
        put(sum ? " + " : " - ");
        const Operand right = product();
        if (right.condition) refuseToken();
        const bool texts = sum && (left.isText() || right.isText()) && !left.isNumber() && !right.isNumber();
        if (texts) result_.sql.replace(mark, 3, " || ");
        Operand whole{.number = !texts, .simple = false, .start = left.start};
        if (texts) whole.declaration.type = ColumnType::Text;
        left = finished(whole);
    }
    return left;
}

Operand SqlGrammar::product() {
    Operand left = signedValue();
    while (isSymbol(peek(), "*") || isSymbol(peek(), "/") || isSymbol(peek(), "%")) {
        if (left.condition) refuseToken();
        put(tokens_[at_++].text);
        if (signedValue().condition) refuseToken();
        left = finished({.number = true, .simple = false, .start = left.start});
    }
    return left;
}

Operand SqlGrammar::signedValue() {
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

Operand SqlGrammar::primary() {
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

Operand SqlGrammar::caseValue() {
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

Operand SqlGrammar::functionCall() {
    const std::size_t start = length();
    const SqlToken name = tokens_[at_++];
    const FunctionRule* const rule = ruleOf(name);
    if (!rule) {
        refuse("'" + std::string(name.text) + "' no es un nombre de función integrada reconocido.");
    }
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

}  // namespace pxtarvo::portable
