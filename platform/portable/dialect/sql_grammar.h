#pragma once

// The grammar of the host server's dialect, read by recursive descent. Only the translator uses it.

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/portable/dialect/column_types.h"
#include "platform/portable/dialect/sql_schema.h"
#include "platform/portable/dialect/sql_tokens.h"
#include "platform/portable/dialect/sql_translator.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

inline constexpr int noLiteral = -1;

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
    bool oneRow = false;  ///< it asks for the row of one key of a table: there is no second one
};

/// What a SELECT is part of.
enum class SelectRole { Result, Scalar, List, Existence };

/// Raises SqlSyntax with the server's text.
[[noreturn]] void refuse(std::string text);

std::string quotedName(std::string_view name);

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

/// One statement: each production takes its tokens and puts what SQLite reads in their place. The tokens, the
/// names and the text made are in sql_grammar.cpp, the productions in the files named below.
class SqlGrammar {
  public:
    SqlGrammar(std::string_view statement, const SqlSchema& schema);
    /// Once. Raises what translateStatement() raises.
    Translation translate();

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
    static bool isName(const SqlToken& token);
    bool acceptWord(std::string_view word);
    bool acceptSymbol(std::string_view symbol);
    void expectWord(std::string_view word) {
        if (!acceptWord(word)) refuseToken();
    }
    void expectSymbol(std::string_view symbol) {
        if (!acceptSymbol(symbol)) refuseToken();
    }
    std::string expectName();
    /// At the end of the statement the server names the last word before it.
    [[noreturn]] void refuseToken() const;
    int literalOf(std::size_t token) const;

    // --- the translated text

    void put(std::string_view text) { result_.sql += text; }
    std::size_t length() const { return result_.sql.size(); }
    /// Makes the comparison or ordering that `operand` takes part in the server's own.
    void collate(const Operand& operand);
    void collateText(const Operand& operand) {
        if (operand.isText()) collate(operand);
    }
    /// A literal that meets a column is read as that column's type.
    void meet(const Operand& value, ColumnType column, bool assigned);
    void meetEachOther(const Operand& left, const Operand& right);
    /// The type of a value that is now `whole`, now `other`; undeclared where they differ.
    static void widen(Operand& whole, const Operand& other);
    /// Whether two operands compare as texts: no number and no date takes part.
    static bool comparesTexts(const Operand& left, const Operand& right);

    // --- names

    const SqlTable& expectTable();
    static const SqlColumn& columnOf(const SqlTable& table, const std::string& name);
    Operand columnReference();
    Operand finished(Operand operand) const;

    // --- conditions (sql_conditions.cpp)

    void condition();
    Operand disjunction();
    Operand conjunction();
    Operand join(const Operand& left, std::string_view word, Operand (SqlGrammar::*next)());
    Operand negation();
    Operand predicate();
    bool comparison(const Operand& left);

    // --- values (sql_values.cpp)

    /// A value where no condition may stand.
    Operand plainValue();
    Operand value();
    Operand product();
    Operand signedValue();
    Operand primary();
    Operand caseValue();
    Operand functionCall();
    static bool isAggregate(const SqlToken& name);

    // --- SELECT (sql_select.cpp)

    Operand subSelect(SelectRole role);
    /// What the words of a SELECT, up to its end, say before they are translated.
    struct Outline {
        Scope scope;
        bool grouped = false;
    };
    /// Whether the WHERE that comes next is no more than "key = value" of this table and ends a sub-select.
    bool asksForKey(const SqlTable& table) const;
    /// Names in the list of values refer to tables that are only named after it.
    Outline readAhead();
    Operand select(SelectRole role);
    /// Fills `items` with the alias and the value of each column; true when there are "*" columns.
    bool valueList(SelectRole role, bool distinct, bool nested,
                   std::vector<std::pair<std::string, Operand>>& items);
    std::pair<std::string, Operand> oneValue(SelectRole role, bool distinct, bool nested);
    void sources();
    void source();
    void groupBy();
    void orderBy(const std::vector<std::pair<std::string, Operand>>& items, bool positionsKnown);
    void orderTerm(const std::vector<std::pair<std::string, Operand>>& items, bool positionsKnown);
    void orderByItem(std::string_view term, const Operand& item);

    // --- statements that write (sql_writes.cpp)

    void whereClause();
    void assign(const SqlColumn& column) { meet(plainValue(), column.declaration.type, true); }
    void insertStatement();
    [[noreturn]] static void refuseValueCount();
    void updateStatement();
    void deleteStatement();

    const SqlSchema& schema_;
    std::vector<SqlToken> tokens_;
    std::vector<std::size_t> literalTokens_;  ///< places in tokens_
    std::size_t at_ = 0;
    std::vector<Scope> scopes_;  ///< the innermost last
    bool conditionsAllowed_ = false;
    int depth_ = 0;
    Translation result_;
};

}  // namespace pxtarvo::portable
