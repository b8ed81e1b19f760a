#pragma once

// What the plug-in requires of the host's shared database library: the context object that the host hands
// over, with its table-writing members, and the host's parameters. The members keep the library's names and
// order. Any of them may raise RuntimeError.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/object_ref.h"
#include "platform/values/variant.h"

namespace pxtarvo {

/// The columns of the next write.
class HostFieldList {
  public:
    virtual ~HostFieldList() = default;
    /// Adds one column. `nTipo` is a Tipo of host/tables.h, `nModo` is always 2. The library answers with an
    /// object that nobody uses.
    virtual void Agregar(std::string_view sNombre, std::int32_t nTipo, const Variant& vValor,
                         std::int32_t nModo) = 0;
};

class HostParameter {
  public:
    virtual ~HostParameter() = default;
    virtual Variant Valor() const = 0;
};

/// The host's application parameters by name.
class HostParameters {
  public:
    virtual ~HostParameters() = default;
    /// Raises the library's error for an unknown name.
    virtual ObjectRef<HostParameter> Item(const Variant& key) const = 0;
};

/// The host's database context. Writes run on `Conexion`, inside whatever transaction is open there.
class HostDatabase {
  public:
    virtual ~HostDatabase() = default;

    virtual ObjectRef<HostParameters> Parametros() const = 0;
    /// Identifier of the user logged into the host.
    virtual std::int32_t Usuario() const = 0;

    /// Start of a new write; always called with 0. Undoes neither Tabla nor Condicion.
    virtual void Limpiar(std::int32_t nOpcion) = 0;
    /// The WHERE clause of the next update or delete with its leading blank and keyword; empty for an insert.
    virtual void Condicion(std::string_view sCondicion) = 0;
    virtual ObjectRef<HostFieldList> Campos() = 0;
    virtual void Tabla(std::string_view sTabla) = 0;
    /// The host's open connection to its database.
    virtual ObjectRef<Connection> Conexion() = 0;

    /// Deletes the rows of the table that match the condition; False is a refusal, with its reason in
    /// `sMensaje`.
    virtual bool Borrar(std::string& sMensaje) = 0;
    /// Updates the rows that match the condition. The result is not used.
    virtual void Ejecutar(std::string& sMensaje) = 0;
    /// Inserts one row; False is a refusal, with its reason in `sMensaje`.
    virtual bool Insertar(std::string& sMensaje) = 0;
};

}  // namespace pxtarvo
