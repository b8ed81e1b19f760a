#pragma once

// The engine of the yearly lists.

#include <string_view>

#include "host/tables.h"
#include "import/import_run.h"

namespace pxtarvo {

/// The layout of a yearly price list: everything that differs from one year's import to another's.
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

class ImportacionTarifa : private Corrida {
  public:
    /// The layout must outlive the run.
    ImportacionTarifa(VistaImportacion ventana, const FormatoTarifa& formato);

    /// Imports the list into the article tables, in one transaction on the host's connection, and closes the
    /// window. Errors before the transaction begins leave as they are; a later one rolls everything back and
    /// is shown with its row.
    void ejecutar();

  private:
    struct Fila;

    void avisarTabla();
    void importarFila(const Recordset& rsOrigen);
    void escribirArticulo(const Fila& fila, const ObjectRef<HostDatabase>& bd);
    void escribirDescuento(const ObjectRef<HostDatabase>& bd);

    const FormatoTarifa& formato_;
    std::string sDescuento_;  ///< text of the last recognised group; never emptied
};

}  // namespace pxtarvo
