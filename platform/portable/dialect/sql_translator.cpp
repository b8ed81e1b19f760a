#include "platform/portable/dialect/sql_translator.h"

#include <algorithm>

#include "platform/portable/dialect/sql_grammar.h"

namespace pxtarvo::portable {

bool Translation::servesShape() const {
    return std::all_of(literals.begin(), literals.end(), [](const LiteralUse& use) { return use.bound; });
}

Translation translateStatement(std::string_view statement, const SqlSchema& schema) {
    return SqlGrammar(statement, schema).translate();
}

}  // namespace pxtarvo::portable
