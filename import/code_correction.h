#pragma once

// The code correction: the stock of articles coded without a leading zero moves to the same codes with it.

#include "platform/database.h"
#include "platform/platform.h"

namespace pxtarvo {

class CorreccionCodigos {
  public:
    explicit CorreccionCodigos(Platform& platform);

    /// Moves the stock of one supplier's articles to the articles of the same code with a leading zero, in
    /// one transaction, after a question. An error of its first query leaves as it is, a later one rolls
    /// everything back and is shown.
    void ejecutar();

  private:
    struct FilaHistoria;

    void pasarExistencias(const Recordset& rsOrigen);
    void escribirHistoria(const Recordset& rsOrigen, const FilaHistoria& historia);

    Platform& platform_;
};

}  // namespace pxtarvo
