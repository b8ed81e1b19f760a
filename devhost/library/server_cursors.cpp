#include "devhost/library/server_cursors.h"

#include <string>
#include <utility>

namespace pxtarvo::devhost {

namespace {

constexpr std::int32_t noFetchingBack = -2147217884;  // DB_E_CANTFETCHBACKWARDS
constexpr std::int32_t featureNotAvailable = 3251;

bool isBeingRead(const Recordset& rows) {
    return rows.State() == adStateOpen && !rows.Eof();
}

class ForwardRows final : public Recordset {
  public:
    /// Nobody else may hold `rows`: they tell whether this result is still being read.
    explicit ForwardRows(ObjectRef<Recordset> rows) : rows_(std::move(rows)) {}

    void Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t cursorType,
              std::int32_t lockType, std::int32_t options) override {
        rows_->Open(source, connection, cursorType, lockType, options);
    }
    void Close() override { rows_->Close(); }
    std::int32_t State() const override { return rows_->State(); }
    bool Bof() const override { return rows_->Bof(); }
    bool Eof() const override { return rows_->Eof(); }
    void MoveFirst() override { refuseMove(); }
    void MoveNext() override { rows_->MoveNext(); }
    std::int32_t RecordCount() const override {
        rows_->RecordCount();  // refused by a closed one
        return -1;
    }
    std::int32_t AbsolutePosition() const override {
        rows_->AbsolutePosition();
        return -1;
    }
    void AbsolutePosition(std::int32_t) override { refuseMove(); }
    std::int32_t FieldCount() const override { return rows_->FieldCount(); }
    std::string FieldName(std::int32_t position) const override { return rows_->FieldName(position); }
    Variant Fields(std::int32_t position) const override { return rows_->Fields(position); }
    Variant Fields(std::string_view name) const override { return rows_->Fields(name); }
    ObjectRef<Recordset> Clone() const override {
        rows_->RecordCount();
        throw RuntimeError(featureNotAvailable,
                           "El objeto o el proveedor no pueden ejecutar la operación solicitada.");
    }

  private:
    void refuseMove() const {
        rows_->RecordCount();
        throw RuntimeError(noFetchingBack, "El conjunto de filas no admite recuperar hacia atrás.");
    }

    ObjectRef<Recordset> rows_;
};

}  // namespace

void ServerCursors::admitStatement() {
    std::erase_if(results_, [](const std::weak_ptr<const Recordset>& result) {
        const auto rows = result.lock();
        return !rows || !isBeingRead(*rows);
    });
    if (results_.empty() || !database_->inTransaction()) return;
    throw RuntimeError(ErrorNumber::ProviderFailure,
                       "No se puede crear una conexión nueva porque se encuentra en modo de transacción "
                       "manual o distribuida.");
}

ObjectRef<Recordset> ServerCursors::Execute(std::string_view commandText, std::int32_t options) {
    admitStatement();
    ObjectRef<Recordset> rows = database_->Execute(commandText, options);
    if (!rows) return rows;
    results_.push_back(rows.shared());
    return makeObject<ForwardRows>(std::move(rows));
}

}  // namespace pxtarvo::devhost
