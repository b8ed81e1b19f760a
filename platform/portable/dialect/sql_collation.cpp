#include "platform/portable/dialect/sql_collation.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

/// What a character weighs: characters are equal when both parts are.
struct Weight {
    std::uint32_t primary = 0;
    std::uint32_t accent = 0;
};

constexpr std::uint32_t firstLetter = 0x100;
constexpr std::uint32_t letterStep = 4;   ///< leaves room for letters between the ASCII ones
constexpr std::uint32_t beyond = 0x1000;  ///< characters outside the table, in the order of their code points
constexpr std::uint32_t malformed = 0x200000;

constexpr std::uint32_t letterWeight(char lower) {
    return firstLetter + letterStep * (lower - 'a');
}

/// Characters 0xE0 to 0xFF (and 0xC0 to 0xDE, their capitals): the letter that they are an accented form of,
/// or a blank for a character of its own.
constexpr std::string_view latinBases = "aaaaaa ceeeeiiii nooooo ouuuuy y";
static_assert(latinBases.size() == 32);

constexpr std::array<Weight, 256> makeWeights() {
    std::array<Weight, 256> weights{};
    for (std::uint32_t c = 0; c < 0x80; ++c) weights[c] = {c + 1, 0};
    for (std::uint32_t c = '0'; c <= '9'; ++c) weights[c] = {0x80 + c, 0};
    for (char c = 'a'; c <= 'z'; ++c) {
        weights[static_cast<unsigned char>(c)] =
            weights[static_cast<unsigned char>(c - 'a' + 'A')] = {letterWeight(c), 0};
    }
    for (std::uint32_t c = 0x80; c < 0x100; ++c) {
        const bool capital = c >= 0xC0 && c <= 0xDE && c != 0xD7;
        const std::uint32_t lower = capital ? c + 0x20 : c;
        const char base = lower >= 0xE0 ? latinBases[lower - 0xE0] : ' ';
        weights[c] = base == ' ' ? Weight{beyond + lower, 0} : Weight{letterWeight(base), lower};
    }
    weights[0xD1] = weights[0xF1] = {letterWeight('n') + 1, 0};
    return weights;
}

constexpr auto weights = makeWeights();

/// Latin Extended-A: capitals and small letters stand side by side, in pairs that begin at an even or odd
/// place.
constexpr std::uint32_t smallLetter(std::uint32_t c) {
    if (c < 0x100 || c > 0x17F || c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149 || c == 0x17F)
        return c;
    if (c == 0x178) return 0xFF;
    const bool capitalsAreOdd = (c >= 0x139 && c <= 0x148) || c >= 0x179;
    return (c % 2 == 1) == capitalsAreOdd ? c + 1 : c;
}

/// Decodes the character at `at` and moves past it; a malformed byte counts as a character of its own.
std::uint32_t decode(std::string_view text, std::size_t& at) noexcept {
    constexpr std::string_view written = "\uFFFD";
    std::string_view rest = text.substr(at);
    const char32_t point = takeCodePoint(rest);
    if (point == replacementCharacter && !text.substr(at).starts_with(written)) {
        return malformed + static_cast<unsigned char>(text[at++]);
    }
    at = text.size() - rest.size();
    return point;
}

Weight weightOf(std::uint32_t code) noexcept {
    code = smallLetter(code);
    return code < weights.size() ? weights[code] : Weight{beyond + code, 0};
}

int compareFrom(std::string_view a, std::string_view b, std::size_t position) noexcept {
    std::size_t atA = position;
    std::size_t atB = position;
    int accents = 0;
    while (atA < a.size() && atB < b.size()) {
        const Weight left = weightOf(decode(a, atA));
        const Weight right = weightOf(decode(b, atB));
        if (left.primary != right.primary) return left.primary < right.primary ? -1 : 1;
        if (accents == 0 && left.accent != right.accent) accents = left.accent < right.accent ? -1 : 1;
    }
    if (atA < a.size()) return 1;
    if (atB < b.size()) return -1;
    return accents;
}

}  // namespace

int compareDealerTexts(std::string_view a, std::string_view b) noexcept {
    a = trimTrailingBlanks(a);
    b = trimTrailingBlanks(b);
    const std::size_t common = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t at = 0; at < common; ++at) {
        const auto left = static_cast<unsigned char>(a[at]);
        const auto right = static_cast<unsigned char>(b[at]);
        if ((left | right) & 0x80) return compareFrom(a, b, at);
        if (weights[left].primary != weights[right].primary) {
            return weights[left].primary < weights[right].primary ? -1 : 1;
        }
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

}  // namespace pxtarvo::portable
