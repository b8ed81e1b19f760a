#pragma once

#include <cstdint>

namespace pxtarvo {

/// The platform's virtual key codes that the windows and their bodies name.
inline constexpr std::int16_t vkBack = 8;
inline constexpr std::int16_t vkTab = 9;
inline constexpr std::int16_t vkReturn = 13;
inline constexpr std::int16_t vkEscape = 27;
inline constexpr std::int16_t vkSpace = 32;
inline constexpr std::int16_t vkPageUp = 33;
inline constexpr std::int16_t vkPageDown = 34;
inline constexpr std::int16_t vkDelete = 46;
inline constexpr std::int16_t vkF1 = 112;
inline constexpr std::int16_t vkF4 = 115;

}  // namespace pxtarvo
