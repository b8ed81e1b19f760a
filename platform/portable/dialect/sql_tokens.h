#pragma once

// The words of a statement in the dialect of the host's server, and a statement's shape: its text with the
// literals taken out, by which prepared statements are found again.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pxtarvo::portable {

enum class SqlTokenKind : std::uint8_t {
    Name,        ///< a word: keyword, table, column, function
    QuotedName,  ///< [name] or "name", never a keyword
    Number,      ///< without a sign
    Text,        ///< 'text'
    Symbol,      ///< an operator or a punctuation mark of one or two characters
    End
};

struct SqlToken {
    SqlTokenKind kind = SqlTokenKind::End;
    bool doubled = false;  ///< `text` holds doubled closing marks ('' in a text, ]] in a name)
    std::string_view
        text;  ///< as it stands in the statement, without the marks around texts and quoted names
    std::size_t start = 0;   ///< byte offset of the token in the statement
    std::size_t finish = 0;  ///< byte offset past the token
};

/// Walks through a statement, which must outlive the tokens.
class SqlTokenizer {
  public:
    explicit SqlTokenizer(std::string_view statement) : statement_(statement) {}
    /// The next token, End at the end and ever after. A number ends at the first character that cannot
    /// continue it. Raises SqlSyntax for an unclosed text, quoted name or comment and for a control
    /// character.
    SqlToken next();
    /// The next number or text, whatever stands before it; End when there is none. Much faster than asking
    /// for every token, and finds the same literals.
    SqlToken nextLiteral();
    /// Takes the literal of this kind that begins right here; false, and nothing taken, where none does.
    bool takeLiteral(SqlTokenKind kind, SqlToken& literal);
    /// Takes `text` when it stands right here.
    bool takeExactly(std::string_view text);
    bool atEnd() const noexcept { return position_ == statement_.size(); }

  private:
    SqlToken marked(SqlTokenKind kind, char closing);
    SqlToken number();
    void skipBlanksAndComments();
    void skipWord();

    std::string_view statement_;
    std::size_t position_ = 0;
};

/// The token's text with doubled closing marks made single.
std::string plainText(const SqlToken& token);

struct StatementShape {
    std::string key;                 ///< every literal replaced by a control character that tells its kind
    std::vector<SqlToken> literals;  ///< the numbers and texts in their order
};

/// A statement that stands for all of its shape.
struct ShapeModel {
    std::string text;
    std::vector<SqlToken> literals;  ///< only their kinds and places count
};

/// Whether `statement` has the shape of `model`; its literals are then in `shape`, whose key is left as it
/// was. Much faster than taking the shape. Raises as SqlTokenizer::next does.
bool followShape(std::string_view statement, const ShapeModel& model, StatementShape& shape);

/// Fills `shape`, whose memory is used again. Raises as SqlTokenizer::next does.
void takeShape(std::string_view statement, StatementShape& shape);

}  // namespace pxtarvo::portable
