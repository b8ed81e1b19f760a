#pragma once

// The engine of the yearly lists.

#include "import/formato_tarifa.h"
#include "import/import_run.h"

namespace pxtarvo {

class ImportacionTarifa : private Corrida {
  public:
    /// The layout must outlive the run.
    ImportacionTarifa(frmImpTarifas& ventana, const FormatoTarifa& formato);

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
