#pragma once

// What the yearly lists have in common.

#include <string_view>

namespace pxtarvo {

/// The source table of every one of them.
inline constexpr std::string_view sTablaTarifa = "List";

}  // namespace pxtarvo
