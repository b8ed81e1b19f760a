#pragma once

#include <string_view>

namespace pxtarvo {

/// The file that the location update reads.
inline constexpr std::string_view sFicheroArticulos = "C:\\tarvo\\articulo.tdw";

}  // namespace pxtarvo
