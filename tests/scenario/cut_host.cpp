#include "tests/scenario/cut_host.h"

#include "devhost/library/host_context.h"
#include "platform/values/text.h"

namespace pxtarvo::test {

namespace {

/// What every decorator has: the object that it stands before, and the count.
template <class Interface>
class Counted : public Interface {
  public:
    Counted(std::shared_ptr<Cut> cut, ObjectRef<Interface> inner, std::string_view who)
        : cut_(std::move(cut)), inner_(std::move(inner)), who_(who) {}

  protected:
    Interface& at(std::string_view member) const {
        cut_->crossing(joined({who_, ".", member}));
        return *inner_;
    }

    const std::shared_ptr<Cut> cut_;
    const ObjectRef<Interface> inner_;
    const std::string_view who_;
};

class CountedConnection;

class CountedRecordset : public Counted<Recordset> {
  public:
    using Counted::Counted;
    void Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t cursorType,
              std::int32_t lockType, std::int32_t options) override;
    void Close() override { at("Close").Close(); }
    std::int32_t State() const override { return at("State").State(); }
    bool Bof() const override { return at("Bof").Bof(); }
    bool Eof() const override { return at("Eof").Eof(); }
    void MoveFirst() override { at("MoveFirst").MoveFirst(); }
    void MoveNext() override { at("MoveNext").MoveNext(); }
    std::int32_t RecordCount() const override { return at("RecordCount").RecordCount(); }
    Variant Fields(std::int32_t position) const override { return at("Fields").Fields(position); }
    Variant Fields(std::string_view name) const override { return at("Fields").Fields(name); }
    // What a grid asks to paint itself crosses nothing.
    std::int32_t AbsolutePosition() const override { return inner_->AbsolutePosition(); }
    void AbsolutePosition(std::int32_t position) override { inner_->AbsolutePosition(position); }
    std::int32_t FieldCount() const override { return inner_->FieldCount(); }
    std::string FieldName(std::int32_t position) const override { return inner_->FieldName(position); }
    ObjectRef<Recordset> Clone() const override { return inner_->Clone(); }
};

class CountedConnection : public Counted<Connection> {
  public:
    using Counted::Counted;
    void ConnectionString(std::string_view value) override { at("ConnectionString").ConnectionString(value); }
    void Open(std::string_view userId, std::string_view password, std::int32_t options) override {
        at("Open").Open(userId, password, options);
    }
    std::int32_t State() const override { return at("State").State(); }
    ObjectRef<Recordset> Execute(std::string_view commandText, std::int32_t options) override {
        return makeObject<CountedRecordset>(cut_, at("Execute").Execute(commandText, options), "rows");
    }
    void BeginTrans() override { at("BeginTrans").BeginTrans(); }
    void CommitTrans() override { at("CommitTrans").CommitTrans(); }
    void RollbackTrans() override { at("RollbackTrans").RollbackTrans(); }

    const ObjectRef<Connection>& itself() const { return inner_; }
};

void CountedRecordset::Open(std::string_view source, const ObjectRef<Connection>& connection,
                            std::int32_t cursorType, std::int32_t lockType, std::int32_t options) {
    at("OpenRows")
        .Open(source, dynamic_cast<CountedConnection&>(*connection).itself(), cursorType, lockType, options);
}

class CountedFields : public Counted<HostFieldList> {
  public:
    using Counted::Counted;
    void Agregar(std::string_view sNombre, std::int32_t nTipo, const Variant& vValor,
                 std::int32_t nModo) override {
        at("Agregar").Agregar(sNombre, nTipo, vValor, nModo);
    }
};

class CountedContext : public Counted<HostDatabase> {
  public:
    using Counted::Counted;
    ObjectRef<HostParameters> Parametros() const override { return at("Parametros").Parametros(); }
    std::int32_t Usuario() const override { return at("Usuario").Usuario(); }
    void Limpiar(std::int32_t nOpcion) override { at("Limpiar").Limpiar(nOpcion); }
    void Condicion(std::string_view sCondicion) override { at("Condicion").Condicion(sCondicion); }
    // Counted with the column for which it is read.
    ObjectRef<HostFieldList> Campos() override {
        return makeObject<CountedFields>(cut_, inner_->Campos(), "fields");
    }
    void Tabla(std::string_view sTabla) override { at("Tabla").Tabla(sTabla); }
    ObjectRef<Connection> Conexion() override {
        return makeObject<CountedConnection>(cut_, at("Conexion").Conexion(), "host");
    }
    // The host's library counts the writes itself, so that it knows of those that fail.
    bool Borrar(std::string& sMensaje) override { return inner_->Borrar(sMensaje); }
    void Ejecutar(std::string& sMensaje) override { inner_->Ejecutar(sMensaje); }
    bool Insertar(std::string& sMensaje) override { return inner_->Insertar(sMensaje); }
};

class CountedHelper : public Counted<HostFieldHelper> {
  public:
    using Counted::Counted;
    double Redondear(double valor, std::int16_t decimales) override {
        return at("Redondear").Redondear(valor, decimales);
    }
    void ColorFondo(double color) override { at("ColorFondo").ColorFondo(color); }
    void ColorFoco(double color) override { at("ColorFoco").ColorFoco(color); }
    void SalirCampo(TextBox& campo, std::string_view sFormato) override {
        at("SalirCampo").SalirCampo(campo, sFormato);
    }
    void EntrarCampo(TextBox& campo, std::string_view sFormato) override {
        at("EntrarCampo").EntrarCampo(campo, sFormato);
    }
    void Conexion(const ObjectRef<Connection>& conexion) override { at("Conexion").Conexion(conexion); }
    void FiltrarTecla(TextBox& campo, std::int16_t& KeyAscii, bool bFecha) override {
        at("FiltrarTecla").FiltrarTecla(campo, KeyAscii, bFecha);
    }
    std::string Buscar(const Busqueda& busqueda) override { return at("Buscar").Buscar(busqueda); }
};

class CountedFiles : public Counted<TextFiles> {
  public:
    using Counted::Counted;
    int freeFile(int lowest) const override { return inner_->freeFile(lowest); }
    void openForInput(int number, std::string_view path) override { at("open").openForInput(number, path); }
    void openForOutput(int number, std::string_view path) override { at("open").openForOutput(number, path); }
    bool atEnd(int number) override { return at("atEnd").atEnd(number); }
    std::string lineInput(int number) override { return at("lineInput").lineInput(number); }
    void print(int number, std::string_view text) override { at("print").print(number, text); }
    void close(int number) override { at("close").close(number); }
};

/// The portable platform with its outside counted; its desktop as it is.
class CountedPlatform : public Counted<Platform> {
  public:
    CountedPlatform(const std::shared_ptr<Cut>& cut, const std::shared_ptr<Platform>& inner)
        : Counted(cut, inner, "platform"),
          files_(cut, std::shared_ptr<TextFiles>(inner, &inner->textFiles()), "files") {}

    ObjectRef<Connection> createConnection() override {
        return makeObject<CountedConnection>(cut_, at("createConnection").createConnection(), "source");
    }
    ObjectRef<Recordset> createRecordset() override {
        return makeObject<CountedRecordset>(cut_, at("createRecordset").createRecordset(), "source");
    }
    ObjectRef<SpreadsheetApplication> createSpreadsheet() override {
        return at("createSpreadsheet").createSpreadsheet();  // which counts for itself
    }
    Desktop& desktop() override { return inner_->desktop(); }
    TextFiles& textFiles() override { return files_; }
    const Clock& clock() const override { return inner_->clock(); }
    const Locale& locale() const override { return inner_->locale(); }
    std::string moduleFolder() const override { return inner_->moduleFolder(); }

  private:
    CountedFiles files_;
};

}  // namespace

void Cut::arm(std::size_t at, Fault fault) {
    names.clear();
    armed_ = true;
    at_ = at;
    fault_ = fault;
}

bool Cut::crossing(std::string name, Fault fault) {
    if (!armed_) return true;
    if (onCrossing) onCrossing();
    names.push_back(std::move(name));
    if (names.size() - 1 != at_) return true;
    if (fault_ == Fault::Raised) throw RuntimeError(cutNumber, cutText);
    return fault_ != fault;
}

CutHost::CutHost(const devhost::DevHostOptions& options) : parts_(options, [this] { handOverNewContext(); }) {
    // The tests' files need not outlive the machine.
    parts_.database->runNative("PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY");
    user().onYielded = [this] {
        if (!cut->crossing("yield", Fault::WindowClosed)) desktop().close(*desktop().activeWindow());
    };
    parts_.state->beforeWrite = [this](const devhost::HostWrite& write) -> std::optional<std::string> {
        const std::string_view kind = devhost::writeNames[static_cast<std::size_t>(write.kind)];
        if (cut->crossing(joined({kind, " ", write.table, " "}), Fault::Refused)) return std::nullopt;
        return cutText;
    };
    const std::shared_ptr<devhost::HostStage> stage = parts_.stage;
    Entorno entorno;
    entorno.platform =
        std::make_shared<CountedPlatform>(cut, std::shared_ptr<Platform>(stage, &stage->platform));
    entorno.crearAyuda = [stage = stage.get(), cut = cut]() -> ObjectRef<HostFieldHelper> {
        return makeObject<CountedHelper>(
            cut, ObjectRef<HostFieldHelper>(std::shared_ptr<HostFieldHelper>(stage->makeFieldHelper())),
            "helper");
    };
    instance_ = PXTarvor::crear(std::move(entorno));
    handOverNewContext();
}

CutHost::~CutHost() {
    user().onYielded = nullptr;
    parts_.state->beforeWrite = nullptr;
    parts_.state->rotate = nullptr;
    instance_->MyBd(nullptr);
}

void CutHost::handOverNewContext() {
    instance_->MyBd(makeObject<CountedContext>(
        cut, ObjectRef<HostDatabase>(makeObject<devhost::DevHostDatabase>(parts_.state)), "context"));
}

bool CutHost::fileOpen() const {
    constexpr int highestNumber = 9;
    for (int number = 1; number <= highestNumber; ++number) {
        try {
            parts_.stage->platform.textFiles().atEnd(number);
            return true;
        } catch (const RuntimeError& error) {
            if (!error.is(ErrorNumber::BadFileNumber)) return true;
        }
    }
    return false;
}

}  // namespace pxtarvo::test
