#pragma once

// What one import keeps from row to row, and what it writes of a row.

#include "fields/window_texts.h"
#include "import/frm_imp_tarifas.h"

namespace pxtarvo {

inline constexpr std::int16_t nCero = 0;
inline constexpr std::int16_t nUno = 1;

/// The columns by which articles are looked up, as the statements spell them.
inline constexpr std::string_view sCodigoArticulo = "Art_Cod";
inline constexpr std::string_view sCodigoBarrasArticulo = "Art_barCode";

struct frmImpTarifas::Corrida {
    double nFila = 0;             ///< 1-based; 0 before the first row
    std::int32_t IdArt = 0;       ///< the row's article, 0 while it is not known to exist
    std::string sDescuento;       ///< yearly lists: text of the last recognised group; never emptied
    std::int16_t nDescuento = 0;  ///< list of 2006: percentage
};

/// A supplier's row of an article.
struct frmImpTarifas::FilaProveedor {
    std::int32_t IdArt = 0;
    Variant vCodigo;
    Variant vDescripcion;
    Variant vPrecio;
    Variant vDescuento;
};

}  // namespace pxtarvo
