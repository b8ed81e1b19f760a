#pragma once

// The layout of a yearly price list: everything that differs from one year's import to another's.

#include <string_view>

#include "host/tables.h"

namespace pxtarvo {

struct FormatoTarifa {
    std::string_view sTabla;             ///< source table
    bool bContarFilas = false;           ///< count the rows first and show progress in the bar
    bool bAvisoTabla = false;            ///< show a notice with the table's name before each source query
    const Columna& marca;                ///< the article's brand column, in the retirement and in the writes
    bool bMarcaSeleccionada = false;     ///< write the chosen brand always; clear: 1, only into new articles
    bool bConservarPrecioMayor = false;  ///< an existing article keeps a selling price above the list's
    bool bReactivar = false;             ///< listed articles become active again
    bool bFechaDeLista = false;          ///< state date from the list; clear: the server's current date
    bool bEscribirCal = false;           ///< write Art_Cal
};

}  // namespace pxtarvo
