#include "platform/portable/access/connection_string.h"

#include <cstdint>

#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

constexpr std::int32_t badInitializationString = -2147217805;

[[noreturn]] void raiseMalformed() {
    throw RuntimeError(badInitializationString,
                       "El formato de la cadena de inicialización no es el de OLE DB.");
}

class Parser {
  public:
    explicit Parser(std::string_view text) : rest_(text) {}

    std::vector<std::pair<std::string, std::string>> parse() {
        std::vector<std::pair<std::string, std::string>> result;
        while (skipSeparators()) {
            std::string name = keyword();
            result.emplace_back(std::move(name), value());
        }
        return result;
    }

  private:
    void skipBlanks() {
        while (rest_.starts_with(' ')) rest_.remove_prefix(1);
    }
    /// Whether anything follows.
    bool skipSeparators() {
        while (rest_.starts_with(' ') || rest_.starts_with(';')) rest_.remove_prefix(1);
        return !rest_.empty();
    }

    std::string keyword() {
        std::string name;
        while (true) {
            const std::size_t end = rest_.find_first_of("=;");
            if (end == std::string_view::npos || rest_[end] == ';') raiseMalformed();
            name.append(rest_, 0, end);
            rest_.remove_prefix(end + 1);
            if (!rest_.starts_with('=')) break;
            name += '=';
            rest_.remove_prefix(1);
        }
        const std::string_view trimmed = trimBlanks(name);
        if (trimmed.empty()) raiseMalformed();
        return std::string(trimmed);
    }

    std::string value() {
        skipBlanks();
        if (rest_.starts_with('"') || rest_.starts_with('\'')) return quotedValue();
        const std::string_view text = rest_.substr(0, rest_.find(';'));
        rest_.remove_prefix(text.size());
        return std::string(trimTrailingBlanks(text));
    }

    std::string quotedValue() {
        const char quote = rest_.front();
        std::string text;
        while (true) {
            rest_.remove_prefix(1);
            const std::size_t end = rest_.find(quote);
            if (end == std::string_view::npos) raiseMalformed();
            text.append(rest_, 0, end);
            rest_.remove_prefix(end + 1);
            if (!rest_.starts_with(quote)) break;
            text += quote;
        }
        skipBlanks();
        if (!rest_.empty() && rest_.front() != ';') raiseMalformed();
        return text;
    }

    std::string_view rest_;
};

}  // namespace

std::vector<std::pair<std::string, std::string>> parseConnectionString(std::string_view text) {
    return Parser(text).parse();
}

}  // namespace pxtarvo::portable
