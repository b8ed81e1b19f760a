#pragma once

// The layouts of the yearly price lists: everything that differs from one year's import to another's.

#include <string_view>

#include "host/tables.h"

namespace pxtarvo {

struct FormatoTarifa {
    std::string_view sTabla;             ///< source table
    bool bContarFilas = false;           ///< count the rows first and show progress in the bar
    bool bAvisoTabla = false;            ///< show a notice with the table's name before each source query
    std::string_view sCampoMarca;        ///< the article's brand column, in the retirement and in the writes
    bool bMarcaSeleccionada = false;     ///< write the chosen brand always; clear: 1, only into new articles
    bool bConservarPrecioMayor = false;  ///< an existing article keeps a selling price above the list's
    bool bReactivar = false;             ///< listed articles become active again
    bool bFechaDeLista = false;          ///< state date from the list; clear: the server's current date
    bool bEscribirCal = false;           ///< write Art_Cal
};

/// The year of the list that has a table and an import of its own.
inline constexpr std::string_view sAnio2006 = "2006";

inline constexpr std::string_view sTablaTarifa = "List";

inline constexpr FormatoTarifa formato2007{
    .sTabla = sTablaTarifa,
    .sCampoMarca = Art::Mar.sNombre,
    .bFechaDeLista = true,
};

inline constexpr FormatoTarifa formato2008{
    .sTabla = sTablaTarifa,
    .bContarFilas = true,
    .sCampoMarca = Art::Mar.sNombre,
    .bConservarPrecioMayor = true,
    .bReactivar = true,
    .bFechaDeLista = true,
};

inline constexpr FormatoTarifa formato2009{
    .sTabla = sTablaTarifa,
    .bContarFilas = true,
    .sCampoMarca = Art::Marca.sNombre,
    .bMarcaSeleccionada = true,
    .bConservarPrecioMayor = true,
    .bReactivar = true,
    .bEscribirCal = true,
};

/// The lists of 2010 and later, in the given source table.
constexpr FormatoTarifa formato2010(std::string_view sTabla) {
    FormatoTarifa formato = formato2009;
    formato.sTabla = sTabla;
    formato.bAvisoTabla = true;
    return formato;
}

}  // namespace pxtarvo
