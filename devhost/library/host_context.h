#pragma once

// The host's context object: collects one write after the other and has it run on the host's connection,
// inside whatever transaction is open there. Where contexts are replaced, each serves once.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "devhost/library/host_state.h"
#include "devhost/record/host_write.h"
#include "devhost/record/protocol_checks.h"
#include "host/host_database.h"

namespace pxtarvo::devhost {

class DevHostDatabase : public HostDatabase {
  public:
    explicit DevHostDatabase(std::shared_ptr<HostState> state);
    ~DevHostDatabase() override;

    ObjectRef<HostParameters> Parametros() const override;
    std::int32_t Usuario() const override;
    /// Empties the columns; table and condition stay.
    void Limpiar(std::int32_t nOpcion) override;
    void Condicion(std::string_view sCondicion) override;
    ObjectRef<HostFieldList> Campos() override;
    void Tabla(std::string_view sTabla) override;
    ObjectRef<pxtarvo::Connection> Conexion() override;

    // Each empties the columns. What the hook, a constraint of the database or a conversion refuses comes
    // back as False and a message, or in Ejecutar as a message alone. So does an update or deletion without a
    // condition: it would hit every row. A failure of the database itself (its file, its disk, a lock) is
    // raised.

    bool Borrar(std::string& sMensaje) override;
    void Ejecutar(std::string& sMensaje) override;
    bool Insertar(std::string& sMensaje) override;

  private:
    class FieldList;

    /// A member that every use reads afresh was asked.
    void asked(std::string_view member) const;
    /// The first member called after a write begins the next one.
    void begin();
    /// Leaves the place to a new context: whoever goes on using this one has kept it.
    void giveUp();
    bool write(WriteKind kind, std::string& sMensaje);
    std::optional<std::string> run(const HostWrite& write);

    std::shared_ptr<HostState> state_;
    std::shared_ptr<FieldList> fields_;
    ObjectRef<pxtarvo::Connection> shared_;  ///< what Conexion answers when contexts are not replaced
    std::string table_;
    std::string condition_;
    WriteConduct conduct_;
    bool begun_ = false;
    bool stale_ = false;
};

}  // namespace pxtarvo::devhost
