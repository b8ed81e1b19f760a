#include "platform/values/text.h"

#include <algorithm>

namespace pxtarvo {

namespace {

bool startsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

constexpr char lowerAscii(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

std::string_view trimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return trimTrailingBlanks(text.substr(first));
}

std::string_view trimTrailingBlanks(std::string_view text) noexcept {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, startsCharacter));
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    if (text.size() <= count) return text;
    std::size_t seen = 0;
    for (std::size_t byte = 0; byte < text.size(); ++byte) {
        if (startsCharacter(text[byte]) && seen++ == count) return text.substr(0, byte);
    }
    return text;
}

std::string paddedRight(std::string_view text, std::size_t width) {
    std::string padded(text);
    const std::size_t length = characterCount(text);
    if (length < width) padded.append(width - length, ' ');
    return padded;
}

std::string replaced(std::string_view text, std::string_view what, std::string_view by) {
    std::string result;
    result.reserve(text.size());
    std::size_t copied = 0;
    for (std::size_t found; (found = text.find(what, copied)) != std::string_view::npos;) {
        result.append(text, copied, found - copied).append(by);
        copied = found + what.size();
    }
    return result.append(text, copied);
}

std::string joined(std::initializer_list<std::string_view> pieces) {
    std::size_t size = 0;
    for (const std::string_view piece : pieces) size += piece.size();
    std::string text(size, '\0');
    auto to = text.begin();
    for (const std::string_view piece : pieces) to = std::ranges::copy(piece, to).out;
    return text;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    if (text.empty()) return pieces;
    std::size_t start = 0;
    for (std::size_t found; (found = text.find(separator, start)) != std::string_view::npos;
         start = found + 1) {
        pieces.emplace_back(text.substr(start, found - start));
    }
    pieces.emplace_back(text.substr(start));
    return pieces;
}

bool equalIgnoringAsciiCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, lowerAscii, lowerAscii);
}

}  // namespace pxtarvo
