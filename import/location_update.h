#pragma once

// The location update from the article file: lines in the ANSI code page, ended by CR or CR LF, of fields
// separated by the character of code 1.

#include "platform/controls.h"
#include "platform/platform.h"

namespace pxtarvo {

class ActualizacionUbicaciones {
  public:
    ActualizacionUbicaciones(Platform& platform, Label& Label2);

    /// Gives articles without a place the one of the article file. No transaction and no trap: an error
    /// leaves as it is, with the file open and what was written before it in place.
    void ejecutar();

  private:
    struct Linea;

    void ubicarArticulo(const Linea& linea);

    Platform& platform_;
    Label& Label2_;
};

}  // namespace pxtarvo
