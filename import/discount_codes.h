#pragma once

// The discount-code texts of the yearly lists by discount group.

#include <optional>
#include <string_view>

namespace pxtarvo {

/// The text for a discount group (exact, case-sensitive); nothing for a group that the table lacks.
std::optional<std::string_view> textoDescuento(std::string_view sGrupo);

}  // namespace pxtarvo
