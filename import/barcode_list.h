#pragma once

// The barcode list, a workbook read cell by cell.

#include "import/import_run.h"

namespace pxtarvo {

class ImportacionCodigosBarras : private Corrida {
  public:
    using Corrida::Corrida;

    /// Creates the articles of the workbook that the host does not have, without a transaction, and closes
    /// the window. Any error ends it with a message, but for a refused insertion, which ends it without.
    void ejecutar();

  private:
    /// Columns of the sheet.
    enum ColumnaHoja { colCodigo = 1, colDescripcion = 2, colCodigoBarras = 3 };

    void importarFila(const Worksheet& hoja);
};

}  // namespace pxtarvo
