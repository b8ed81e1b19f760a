#include <algorithm>
#include <array>

#include "platform/values/text.h"

namespace pxtarvo {

namespace {

/// The code points of Windows-1252's bytes 0x80 to 0x9F; every other byte is its own code point. The five
/// bytes that the code page leaves undefined stand for the control character of the same code.
constexpr std::array<char16_t, 32> windows1252Specials = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void appendUtf8(std::string& text, char32_t point) {
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | (point >> shift & 0x3F)); };
    if (point < 0x80) {
        text += static_cast<char>(point);
    } else if (point < 0x800) {
        text += static_cast<char>(0xC0 | point >> 6);
        tail(0);
    } else if (point < 0x10000) {
        text += static_cast<char>(0xE0 | point >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | point >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

char windows1252Byte(char32_t point) {
    if (point < 0x80 || (point >= 0xA0 && point <= 0xFF)) return static_cast<char>(point);
    const auto found = std::ranges::find(windows1252Specials, point);
    if (found == windows1252Specials.end()) return '?';
    return static_cast<char>(0x80 + (found - windows1252Specials.begin()));
}

}  // namespace

char32_t takeCodePoint(std::string_view& text) noexcept {
    const auto lead = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80) return lead;
    const int following = lead >= 0xC2 && lead <= 0xDF   ? 1
                          : (lead & 0xF0) == 0xE0        ? 2
                          : lead >= 0xF0 && lead <= 0xF4 ? 3
                                                         : 0;
    if (following == 0) return replacementCharacter;
    // The second byte's range excludes overlong forms, surrogates and what lies beyond U+10FFFF.
    unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t point = lead & (0x3Fu >> following);
    for (int taken = 0; taken < following; ++taken) {
        if (text.empty()) return replacementCharacter;
        const auto byte = static_cast<unsigned char>(text.front());
        if (byte < lowest || byte > highest) return replacementCharacter;
        text.remove_prefix(1);
        point = point << 6 | (byte & 0x3Fu);
        lowest = 0x80;
        highest = 0xBF;
    }
    return point;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    while (!text.empty()) {
        const char32_t point = takeCodePoint(text);
        if (point < 0x10000) {
            units += static_cast<char16_t>(point);
        } else {
            units += static_cast<char16_t>(0xD7C0 + (point >> 10));
            units += static_cast<char16_t>(0xDC00 | (point & 0x3FF));
        }
    }
    return units;
}

std::string toUtf8(std::u16string_view units) {
    std::string text;
    text.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t point = units[i];
        if (isHighSurrogate(units[i]) && i + 1 < units.size() && isLowSurrogate(units[i + 1])) {
            point = 0x10000 + ((point & 0x3FF) << 10 | (units[++i] & 0x3FF));
        } else if (isHighSurrogate(units[i]) || isLowSurrogate(units[i])) {
            point = replacementCharacter;
        }
        appendUtf8(text, point);
    }
    return text;
}

std::string toWindows1252(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) bytes += windows1252Byte(takeCodePoint(text));
    return bytes;
}

std::string fromWindows1252(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        const bool special = code >= 0x80 && code <= 0x9F;
        appendUtf8(text, special ? windows1252Specials[code - 0x80u] : code);
    }
    return text;
}

}  // namespace pxtarvo
