#pragma once

// What a list's discount group stands for: a discount-code text in the yearly lists, a percentage in the list
// of 2006. The two tables are the supplier's and differ in group "65".

#include <cstdint>
#include <optional>
#include <string_view>

namespace pxtarvo {

/// The text for a discount group (exact, case-sensitive); nothing for a group that the table lacks.
std::optional<std::string_view> textoDescuento(std::string_view sGrupo);

/// The percentage for a discount group (exact, case-sensitive); 0 for a group that the table lacks.
std::int16_t porcentajeDescuento(std::string_view sGrupo);

}  // namespace pxtarvo
