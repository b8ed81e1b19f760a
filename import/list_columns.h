#pragma once

// Where the lists have what the imports read of them.

#include <cstdint>

namespace pxtarvo {

/// Columns by position, -1 for what a list does not have. A source table counts from 0, a sheet from 1.
struct ColumnasLista {
    std::int32_t nCodigo = -1;
    std::int32_t nPrecio = -1;
    std::int32_t nFecha = -1;
    std::int32_t nGrupo = -1;
    std::int32_t nDescripcion = -1;
    std::int32_t nCodigoBarras = -1;
};

inline constexpr ColumnasLista columnasTarifa{
    .nCodigo = 1, .nPrecio = 3, .nFecha = 4, .nGrupo = 5, .nDescripcion = 9};
inline constexpr ColumnasLista columnas2006{.nCodigo = 1, .nPrecio = 4, .nGrupo = 5, .nDescripcion = 3};
inline constexpr ColumnasLista columnasCodigosBarras{.nCodigo = 1, .nDescripcion = 2, .nCodigoBarras = 3};

}  // namespace pxtarvo
