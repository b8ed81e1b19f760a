#pragma once

// What the import window's runs say at their end, beside fields/window_texts.h.

#include <string_view>

namespace pxtarvo {

/// Begins the message of a run that stopped at an error; the row's number follows.
inline constexpr std::string_view sRegistro = "Registro ";
/// Ends the code correction.
inline constexpr std::string_view sCorreccionConcluida = "proceso concluido";

}  // namespace pxtarvo
