#pragma once

#include "host/host_database.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::windows {

/// The context object that the host handed over, reached through automation. Its library's interface is not
/// known: every member is called by name, `Tabla` and `Condicion` are plain assignments, by-reference
/// arguments have the exact types that the library declares.
class AutomationHostDatabase : public HostDatabase {
  public:
    /// `database` must not be Nothing.
    explicit AutomationHostDatabase(Reference<IDispatch> database) : database_(std::move(database)) {}

    /// The very object that was handed over.
    const Reference<IDispatch>& object() const noexcept { return database_.object(); }

    ObjectRef<HostParameters> Parametros() const override;
    std::int32_t Usuario() const override;
    void Limpiar(std::int32_t nOpcion) override;
    void Condicion(std::string_view sCondicion) override;
    ObjectRef<HostFieldList> Campos() override;
    void Tabla(std::string_view sTabla) override;
    ObjectRef<Connection> Conexion() override;
    bool Borrar(std::string& sMensaje) override;
    void Ejecutar(std::string& sMensaje) override;
    bool Insertar(std::string& sMensaje) override;

  private:
    OwnedVariant write(std::u16string_view member, std::string& sMensaje);

    Dispatch database_;
};

}  // namespace pxtarvo::windows
