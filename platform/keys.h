#pragma once

#include <cstdint>

namespace pxtarvo {

/// The platform's virtual key codes that the windows and their bodies name.
inline constexpr std::int16_t vkTab = 9;
inline constexpr std::int16_t vkReturn = 13;
inline constexpr std::int16_t vkEscape = 27;
inline constexpr std::int16_t vkSpace = 32;
inline constexpr std::int16_t vkPageUp = 33;
inline constexpr std::int16_t vkPageDown = 34;
inline constexpr std::int16_t vkDown = 40;
inline constexpr std::int16_t vkDelete = 46;
inline constexpr std::int16_t vkF1 = 112;
inline constexpr std::int16_t vkF4 = 115;

/// The key that gives a character: letters and digits have their own, which one gives any other is the
/// keyboard's matter.
constexpr std::int16_t keyOf(char32_t character) noexcept {
    constexpr std::int16_t anyOtherKey = 190;
    if (character >= U'a' && character <= U'z') return static_cast<std::int16_t>(character - U'a' + U'A');
    const bool own = (character >= U'A' && character <= U'Z') || (character >= U'0' && character <= U'9');
    return own ? static_cast<std::int16_t>(character) : anyOtherKey;
}

}  // namespace pxtarvo
