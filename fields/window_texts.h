#pragma once

// Texts that more than one window shows.

#include <string_view>

namespace pxtarvo {

inline constexpr std::string_view sRotuloFichero = "Fichero origen de datos";
inline constexpr std::string_view sRotuloProveedor = "Proveedor (F1 Busqueda)";
inline constexpr std::string_view sRotuloMarca = "Marca (F1 Busqueda)";
/// The end of a run that did what it was to do.
inline constexpr std::string_view sExito = "Proceso finalizado con exito";

}  // namespace pxtarvo
