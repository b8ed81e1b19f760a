#pragma once

// The host's context object and table writer over a database connection: builds INSERT, UPDATE and DELETE in
// the host's SQL dialect and runs them on the connection, inside whatever transaction is open there.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/library/bound_writes.h"
#include "devhost/record/host_write.h"
#include "devhost/record/protocol_checks.h"
#include "devhost/record/recorder.h"
#include "host/host_database.h"
#include "platform/values/locale.h"

namespace pxtarvo::devhost {

/// What the contexts of one host share.
struct HostState {
    /// The host's database.
    ObjectRef<Connection> connection;
    const Locale* locale = &spanishLocale();
    std::shared_ptr<Recorder> recorder;      ///< may be empty
    std::shared_ptr<ProtocolChecks> checks;  ///< may be empty
    std::int32_t usuario = 1;
    std::map<std::string, Variant> parametros{{"PAR_ORCONTANOM", Variant(std::int16_t{0})}};
    WriteHook beforeWrite;
    /// Set while contexts are replaced after each use: hands the plug-in a new one.
    std::function<void()> rotate;
    ContextNumber contexts = 0;  ///< made so far
    /// Made by the first context where `connection` is the database's own.
    std::shared_ptr<BoundWrites> boundWrites;
};

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

    // Each empties the columns. What the database or a conversion refuses comes back as False and a message,
    // or in Ejecutar as a message alone. So does an update or deletion without a condition: it would hit
    // every row.

    bool Borrar(std::string& sMensaje) override;
    void Ejecutar(std::string& sMensaje) override;
    bool Insertar(std::string& sMensaje) override;

  private:
    class FieldList;

    void begin();
    void giveUp();
    bool write(WriteKind kind, std::string& sMensaje);
    bool run(const HostWrite& write, std::string& sMensaje);
    void checkFresh(std::string_view member) const;

    std::shared_ptr<HostState> state_;
    std::shared_ptr<FieldList> fields_;
    ObjectRef<pxtarvo::Connection> shared_;  ///< what Conexion answers when contexts are not replaced
    std::string table_;
    std::string condition_;
    std::string sql_;
    WriteConduct conduct_;
    bool begun_ = false;
    bool stale_ = false;
};

}  // namespace pxtarvo::devhost
