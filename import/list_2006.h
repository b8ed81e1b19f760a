#pragma once

// The list of 2006: a table of its own, discount percentages and a net cost price.

#include "import/import_run.h"

namespace pxtarvo {

inline constexpr std::string_view sAnio2006 = "2006";
/// Its source table.
inline constexpr std::string_view sTabla2006 = "31EUR000";

class Importacion2006 : private Corrida {
  public:
    using Corrida::Corrida;

    /// Imports the list and closes the window. It begins no transaction and ends one all the same: with none
    /// open on the host's connection the refused roll back leaves as an error, and what was written stays.
    void ejecutar();

  private:
    void importarFila(const Recordset& rsOrigen);

    std::int16_t nDescuento_ = 0;  ///< percentage; kept while the window shows another year
};

}  // namespace pxtarvo
