#include "platform/portable/dialect/sql_tokens.h"

#include <algorithm>
#include <array>

#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

constexpr char numberMark = '\x01';
constexpr char textMark = '\x02';

enum class CharacterClass : std::uint8_t { Invalid, Blank, Word, Digit, Symbol };

constexpr std::array<CharacterClass, 256> makeClasses() {
    std::array<CharacterClass, 256> classes{};
    for (const char blank : {' ', '\t', '\r', '\n', '\f', '\v'}) {
        classes[static_cast<unsigned char>(blank)] = CharacterClass::Blank;
    }
    for (int c = 0x21; c < 0x7F; ++c) classes[c] = CharacterClass::Symbol;
    for (int c = '0'; c <= '9'; ++c) classes[c] = CharacterClass::Digit;
    for (int c = 'a'; c <= 'z'; ++c) classes[c] = classes[c - 'a' + 'A'] = CharacterClass::Word;
    for (const char c : {'_', '@', '#', '$'}) classes[static_cast<unsigned char>(c)] = CharacterClass::Word;
    for (int c = 0x80; c < 0x100; ++c) classes[c] = CharacterClass::Word;
    return classes;
}

constexpr auto classes = makeClasses();

/// The characters at which a literal, or something that might hide one, can begin, and those that are
/// refused.
constexpr std::array<bool, 256> makeLiteralBeginnings() {
    std::array<bool, 256> begins{};
    for (std::size_t c = 0; c < begins.size(); ++c) {
        begins[c] = classes[c] == CharacterClass::Digit || classes[c] == CharacterClass::Invalid;
    }
    for (const char c : {'\'', '"', '[', '-', '/', '.'}) begins[static_cast<unsigned char>(c)] = true;
    return begins;
}

constexpr auto mayBeginLiteral = makeLiteralBeginnings();

CharacterClass classOf(char c) {
    return classes[static_cast<unsigned char>(c)];
}

[[noreturn]] void raiseInvalidCharacter() {
    throw RuntimeError(ErrorNumber::SqlSyntax, "Carácter no válido en la instrucción.");
}

[[noreturn]] void raiseUnclosedText(std::string_view rest) {
    throw RuntimeError(ErrorNumber::SqlSyntax,
                       "Comilla no cerrada antes de la cadena de caracteres '" + std::string(rest) + "'.");
}

}  // namespace

void SqlTokenizer::skipBlanksAndComments() {
    while (position_ < statement_.size()) {
        const char c = statement_[position_];
        if (classOf(c) == CharacterClass::Blank) {
            ++position_;
            continue;
        }
        if ((c != '-' && c != '/') || position_ + 1 == statement_.size()) return;
        const std::string_view opening = statement_.substr(position_, 2);
        if (opening == "--") {
            position_ = std::min(statement_.find('\n', position_), statement_.size());
        } else if (opening == "/*") {
            const std::size_t closing = statement_.find("*/", position_ + 2);
            if (closing == std::string_view::npos) {
                throw RuntimeError(ErrorNumber::SqlSyntax, "Falta la marca de fin de comentario '*/'.");
            }
            position_ = closing + 2;
        } else {
            return;
        }
    }
}

SqlToken SqlTokenizer::marked(SqlTokenKind kind, char closing) {
    SqlToken token;
    token.kind = kind;
    token.start = position_;
    const std::size_t first = position_ + 1;
    std::size_t at = first;
    for (;;) {
        at = statement_.find(closing, at);
        if (at == std::string_view::npos) raiseUnclosedText(statement_.substr(first));
        if (at + 1 == statement_.size() || statement_[at + 1] != closing) break;
        token.doubled = true;
        at += 2;
    }
    token.text = statement_.substr(first, at - first);
    // SQLite ends a statement at a zero, and a name stands in the statement itself.
    if (kind == SqlTokenKind::QuotedName && token.text.find('\0') != token.text.npos) raiseInvalidCharacter();
    token.finish = position_ = at + 1;
    return token;
}

SqlToken SqlTokenizer::number() {
    const std::size_t size = statement_.size();
    std::size_t at = position_;
    while (at < size && isDigit(statement_[at])) ++at;
    if (at < size && statement_[at] == '.') {
        ++at;
        while (at < size && isDigit(statement_[at])) ++at;
    }
    if (at < size && (statement_[at] == 'e' || statement_[at] == 'E')) {
        std::size_t exponent = at + 1;
        if (exponent < size && (statement_[exponent] == '+' || statement_[exponent] == '-')) ++exponent;
        if (exponent < size && isDigit(statement_[exponent])) {
            while (exponent < size && isDigit(statement_[exponent])) ++exponent;
            at = exponent;
        }
    }
    SqlToken token{SqlTokenKind::Number, false, statement_.substr(position_, at - position_), position_, at};
    position_ = at;
    return token;
}

void SqlTokenizer::skipWord() {
    const std::size_t size = statement_.size();
    while (position_ < size && classOf(statement_[position_]) >= CharacterClass::Word &&
           classOf(statement_[position_]) <= CharacterClass::Digit) {
        ++position_;
    }
}

SqlToken SqlTokenizer::next() {
    skipBlanksAndComments();
    const std::size_t start = position_;
    if (start == statement_.size()) return {SqlTokenKind::End, false, {}, start, start};
    const char c = statement_[start];
    switch (classOf(c)) {
        case CharacterClass::Word: {
            skipWord();
            return {SqlTokenKind::Name, false, statement_.substr(start, position_ - start), start, position_};
        }
        case CharacterClass::Digit:
            return number();
        case CharacterClass::Symbol: {
            if (c == '\'') return marked(SqlTokenKind::Text, '\'');
            if (c == '"') return marked(SqlTokenKind::QuotedName, '"');
            if (c == '[') return marked(SqlTokenKind::QuotedName, ']');
            const char following = start + 1 < statement_.size() ? statement_[start + 1] : '\0';
            if (c == '.' && isDigit(following)) return number();
            const bool two =
                (following == '=' && (c == '<' || c == '>' || c == '!')) || (c == '<' && following == '>');
            position_ = start + (two ? 2 : 1);
            return {SqlTokenKind::Symbol, false, statement_.substr(start, two ? 2 : 1), start, position_};
        }
        default:
            raiseInvalidCharacter();
    }
}

std::string plainText(const SqlToken& token) {
    std::string plain(token.text);
    if (!token.doubled) return plain;
    const char opening = token.text.data()[-1];  // the mark stands in the statement, right before the text
    const char closing = opening == '[' ? ']' : opening;
    for (std::size_t at = plain.find(closing); at != plain.npos; at = plain.find(closing, at + 1))
        plain.erase(at, 1);
    return plain;
}

SqlToken SqlTokenizer::nextLiteral() {
    const std::size_t size = statement_.size();
    for (;;) {
        while (position_ < size && !mayBeginLiteral[static_cast<unsigned char>(statement_[position_])])
            ++position_;
        if (position_ < size && isDigit(statement_[position_])) {
            const bool insideWord =
                position_ > 0 && classOf(statement_[position_ - 1]) == CharacterClass::Word;
            if (!insideWord) return number();
            skipWord();
            continue;
        }
        const SqlToken token = next();
        if (token.kind == SqlTokenKind::End || token.kind == SqlTokenKind::Text ||
            token.kind == SqlTokenKind::Number) {
            return token;
        }
    }
}

bool SqlTokenizer::takeLiteral(SqlTokenKind kind, SqlToken& literal) {
    if (atEnd()) return false;
    const char c = statement_[position_];
    if (kind == SqlTokenKind::Text) {
        if (c != '\'') return false;
        literal = marked(SqlTokenKind::Text, c);
        return true;
    }
    if (!isDigit(c)) return false;
    literal = number();
    return true;
}

bool SqlTokenizer::takeExactly(std::string_view text) {
    if (statement_.compare(position_, text.size(), text) != 0) return false;
    position_ += text.size();
    return true;
}

bool followShape(std::string_view statement, const ShapeModel& model, StatementShape& shape) {
    shape.literals.clear();
    SqlTokenizer tokenizer(statement);
    const std::string_view text = model.text;
    std::size_t from = 0;
    for (const SqlToken& known : model.literals) {
        if (!tokenizer.takeExactly(text.substr(from, known.start - from)) ||
            !tokenizer.takeLiteral(known.kind, shape.literals.emplace_back())) {
            return false;
        }
        from = known.finish;
    }
    return tokenizer.takeExactly(text.substr(from)) && tokenizer.atEnd();
}

void takeShape(std::string_view statement, StatementShape& shape) {
    shape.key.clear();
    shape.literals.clear();
    SqlTokenizer tokenizer(statement);
    std::size_t copied = 0;
    for (SqlToken token = tokenizer.nextLiteral(); token.kind != SqlTokenKind::End;
         token = tokenizer.nextLiteral()) {
        shape.key.append(statement.data() + copied, token.start - copied);
        shape.key.push_back(token.kind == SqlTokenKind::Number ? numberMark : textMark);
        copied = token.finish;
        shape.literals.push_back(token);
    }
    shape.key.append(statement.data() + copied, statement.size() - copied);
}

}  // namespace pxtarvo::portable
