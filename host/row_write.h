#pragma once

// The steps of writing one row through the host's table writer.

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "host/host_database.h"
#include "host/tables.h"
#include "platform/values/locale.h"

namespace pxtarvo {

/// Which of the two opening members of a write is called first; the procedures differ.
enum class AbrirCon { Tabla, Limpiar };

/// One write: opened by the constructor, columns added in order, ended by one of the three last members.
class EscrituraFila {
  public:
    EscrituraFila(const ObjectRef<HostDatabase>& bd, const Tabla& tabla, AbrirCon primero = AbrirCon::Tabla);

    /// Adds a column with its own kind.
    EscrituraFila& agregar(const Columna& columna, const Variant& vValor);
    /// Adds columns of one value.
    EscrituraFila& agregar(std::initializer_list<Columna> columnas, const Variant& vValor);
    /// Adds a column that holds the server's current date and time.
    EscrituraFila& agregarFechaServidor(const Columna& columna);

    /// Updates the rows that `sCondicion` (see condicion()) names; a soft failure goes unnoticed.
    void actualizar(std::string_view sCondicion);
    /// False when the host refuses, with the reason in `sMensaje`.
    bool insertar(std::string& sMensaje);
    bool borrar(std::string_view sCondicion, std::string& sMensaje);

  private:
    ObjectRef<HostDatabase> bd_;
};

/// " WHERE " column " = " number, as the table writer wants it.
std::string condicion(const Columna& clave, std::int32_t nValor);
/// The same with an identifier as the database gave it, which may be wider than 32 bits.
std::string condicion(const Columna& clave, const Variant& vValor, const Locale& locale);

}  // namespace pxtarvo
