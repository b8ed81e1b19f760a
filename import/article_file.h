#pragma once

// The article file of the location update, and the message at its end.

#include <string>
#include <string_view>

#include "platform/values/text.h"

namespace pxtarvo {

inline constexpr std::string_view sFicheroArticulos = "C:\\tarvo\\articulo.tdw";
/// The number under which it is open.
inline constexpr int nFicheroArticulos = 1;

inline std::string textoUbicacionesLeidas() {
    return joined({"Proceso de importacion de ", sFicheroArticulos, " finalizado"});
}

}  // namespace pxtarvo
