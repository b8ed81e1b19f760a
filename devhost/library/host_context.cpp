#include "devhost/library/host_context.h"

#include <span>
#include <utility>

#include "devhost/record/recording_connection.h"
#include "platform/values/conversion.h"

namespace pxtarvo::devhost {

namespace {

class DevParameter : public HostParameter {
  public:
    explicit DevParameter(Variant valor) : valor_(std::move(valor)) {}
    Variant Valor() const override { return valor_; }

  private:
    Variant valor_;
};

class DevParameters : public HostParameters {
  public:
    explicit DevParameters(std::shared_ptr<HostState> state) : state_(std::move(state)) {}

    ObjectRef<HostParameter> Item(const Variant& key) const override {
        const auto found = state_->parametros.find(toText(key, *state_->locale));
        if (found == state_->parametros.end()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
        return makeObject<DevParameter>(found->second);
    }

  private:
    std::shared_ptr<HostState> state_;
};

}  // namespace

/// The columns of the next write. Their storage is kept from write to write.
class DevHostDatabase::FieldList : public HostFieldList {
  public:
    explicit FieldList(std::shared_ptr<HostState> state) : state_(std::move(state)) {}

    void Agregar(std::string_view sNombre, std::int32_t nTipo, const Variant& vValor,
                 std::int32_t nModo) override {
        if (state_->checks) state_->checks->agregar(sNombre, nModo, std::exchange(readAfresh_, false));
        if (count_ == columns_.size()) columns_.emplace_back();
        WrittenColumn& column = columns_[count_++];
        column.name = sNombre;
        column.nTipo = nTipo;
        column.value = vValor;
    }

    void readAfresh() noexcept { readAfresh_ = true; }
    void clear() noexcept { count_ = 0; }
    std::span<const WrittenColumn> columns() const noexcept { return {columns_.data(), count_}; }

  private:
    std::shared_ptr<HostState> state_;
    std::vector<WrittenColumn> columns_;
    std::size_t count_ = 0;
    bool readAfresh_ = false;
};

DevHostDatabase::DevHostDatabase(std::shared_ptr<HostState> state)
    : state_(std::move(state)), fields_(std::make_shared<FieldList>(state_)) {
    conduct_.context = ++state_->contexts;
    if (!state_->writer) state_->writer = std::make_shared<HostWriter>(state_->connection, *state_->locale);
    if (!state_->rotate) {
        shared_ = makeObject<RecordingConnection>(state_->offered(), state_->recorder, state_->checks, false);
    }
}

DevHostDatabase::~DevHostDatabase() = default;

void DevHostDatabase::asked(std::string_view member) const {
    if (stale_ && state_->checks) state_->checks->staleContext(member);
}

void DevHostDatabase::begin() {
    if (std::exchange(begun_, true)) return;
    conduct_.stale = stale_;
    conduct_.limpiarCalled = conduct_.tablaSet = conduct_.limpiarFirst = false;
}

void DevHostDatabase::giveUp() {
    if (!std::exchange(stale_, true)) state_->rotate();
}

ObjectRef<HostParameters> DevHostDatabase::Parametros() const {
    asked("Parametros");
    return makeObject<DevParameters>(state_);
}

std::int32_t DevHostDatabase::Usuario() const {
    asked("Usuario");
    return state_->usuario;
}

void DevHostDatabase::Limpiar(std::int32_t nOpcion) {
    begin();
    if (state_->checks) state_->checks->limpiar(nOpcion);
    conduct_.limpiarCalled = true;
    if (!conduct_.tablaSet) conduct_.limpiarFirst = true;
    fields_->clear();
}

void DevHostDatabase::Tabla(std::string_view sTabla) {
    begin();
    conduct_.tablaSet = true;
    table_ = sTabla;
}

void DevHostDatabase::Condicion(std::string_view sCondicion) {
    condition_ = sCondicion;
}

ObjectRef<HostFieldList> DevHostDatabase::Campos() {
    fields_->readAfresh();
    return std::shared_ptr<HostFieldList>(fields_);
}

ObjectRef<pxtarvo::Connection> DevHostDatabase::Conexion() {
    asked("Conexion");
    if (!state_->rotate) return shared_;
    giveUp();
    return makeObject<RecordingConnection>(state_->offered(), state_->recorder, state_->checks, true);
}

bool DevHostDatabase::Borrar(std::string& sMensaje) {
    return write(WriteKind::Delete, sMensaje);
}
void DevHostDatabase::Ejecutar(std::string& sMensaje) {
    write(WriteKind::Update, sMensaje);
}
bool DevHostDatabase::Insertar(std::string& sMensaje) {
    return write(WriteKind::Insert, sMensaje);
}

bool DevHostDatabase::write(WriteKind kind, std::string& sMensaje) {
    const std::shared_ptr<FieldList> fields = fields_;
    struct Ended {
        bool& begun;
        FieldList& fields;
        ~Ended() {
            fields.clear();
            begun = false;
        }
    };
    const Ended ended{begun_, *fields};
    const HostWrite write{kind, table_, condition_, fields->columns()};
    begin();
    // The last write of its context: a new one takes the place.
    if (state_->checks && state_->checks->write(write, conduct_, static_cast<bool>(state_->rotate))) giveUp();

    std::optional<std::string> refusal;
    recorded([&] { refusal = run(write); },
             [&](const RuntimeError* error) {
                 if (state_->recorder) state_->recorder->write(write, !refusal, error);
             });
    if (!refusal) return true;
    state_->refused.add(write, *refusal);
    sMensaje = std::move(*refusal);
    return false;
}

/// What the host refuses the write with, if it does.
std::optional<std::string> DevHostDatabase::run(const HostWrite& write) {
    if (state_->beforeWrite) {
        if (auto refusal = state_->beforeWrite(write)) return refusal;
    }
    if (write.kind != WriteKind::Insert && write.condition.empty()) return "Falta la condición.";
    try {
        if (state_->serverCursors) state_->serverCursors->admitStatement();
        state_->writer->run(write);
        return std::nullopt;
    } catch (const RuntimeError& error) {
        if (error.is(ErrorNumber::ProviderFailure)) throw;
        return std::string(error.description());
    }
}

}  // namespace pxtarvo::devhost
