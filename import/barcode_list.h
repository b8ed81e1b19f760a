#pragma once

// The barcode list, a workbook read cell by cell.

#include "import/import_run.h"

namespace pxtarvo {

/// The only year of the list that the window imports.
inline constexpr std::string_view sAnioCodigosBarras = "2008";

class ImportacionCodigosBarras : private Corrida {
  public:
    using Corrida::Corrida;

    /// Creates the articles of the workbook that the host does not have, without a transaction, and closes
    /// the window. Any error ends it with a message, but for a refused insertion, which ends it without.
    void ejecutar();

  private:
    void importarFila(const Worksheet& hoja);
};

}  // namespace pxtarvo
