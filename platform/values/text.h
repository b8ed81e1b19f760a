#pragma once

// Texts are UTF-8 in std::string. Blanks are U+0020 only. Lengths, cuts and paddings count characters (code
// points), not bytes.

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace pxtarvo {

/// An ASCII digit.
constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

std::string_view trimBlanks(std::string_view text);
std::string_view trimTrailingBlanks(std::string_view text) noexcept;

std::size_t characterCount(std::string_view text);
/// The first `count` characters, or the whole text when it is shorter.
std::string_view firstCharacters(std::string_view text, std::size_t count);
/// `text` with blanks added on the right up to `width` characters; a longer one unchanged.
std::string paddedRight(std::string_view text, std::size_t width);

/// Every occurrence of `what` (not empty) replaced.
std::string replaced(std::string_view text, std::string_view what, std::string_view by);
/// The pieces one behind the other.
std::string joined(std::initializer_list<std::string_view> pieces);
/// Split at every `separator`, empty pieces kept; an empty text has no piece at all. The pieces are views
/// into `text`.
std::vector<std::string_view> split(std::string_view text, char separator);

/// Equal without regard to the case of ASCII letters: names of tables, columns and files' extensions.
bool equalIgnoringAsciiCase(std::string_view a, std::string_view b);

/// Stands for what is malformed.
inline constexpr char32_t replacementCharacter = 0xFFFD;
/// Takes the next code point off `text`, which is not empty. A malformed sequence costs its longest
/// well-formed beginning, at least one byte, and gives the replacement character.
char32_t takeCodePoint(std::string_view& text) noexcept;

std::u16string toUtf16(std::string_view text);  ///< malformed UTF-8 becomes U+FFFD
std::string toUtf8(std::u16string_view text);   ///< lone surrogates become U+FFFD

/// Windows-1252, the ANSI code page of the portable body; characters it lacks become "?".
std::string toWindows1252(std::string_view text);
std::string fromWindows1252(std::string_view bytes);

}  // namespace pxtarvo
