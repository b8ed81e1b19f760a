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
    std::int32_t Usuario() const override { return database_.number(u"Usuario"); }
    void Limpiar(std::int32_t nOpcion) override { database_.run(u"Limpiar", OwnedVariant(nOpcion)); }
    void Condicion(std::string_view sCondicion) override {
        database_.put(u"Condicion", OwnedVariant(sCondicion));
    }
    ObjectRef<HostFieldList> Campos() override;
    void Tabla(std::string_view sTabla) override { database_.put(u"Tabla", OwnedVariant(sTabla)); }
    ObjectRef<Connection> Conexion() override;
    bool Borrar(std::string& sMensaje) override { return accepted(write(u"Borrar", sMensaje)); }
    void Ejecutar(std::string& sMensaje) override { write(u"Ejecutar", sMensaje); }
    bool Insertar(std::string& sMensaje) override { return accepted(write(u"Insertar", sMensaje)); }

  private:
    OwnedVariant write(std::u16string_view member, std::string& sMensaje);
    static bool accepted(const OwnedVariant& answer);

    Dispatch database_;
};

}  // namespace pxtarvo::windows
