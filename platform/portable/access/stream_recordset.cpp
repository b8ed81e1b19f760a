#include "platform/portable/access/stream_recordset.h"

#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

[[noreturn]] void raiseNotAvailable() {
    throw RuntimeError(adErrFeatureNotAvailable,
                       "El objeto o el proveedor no pueden realizar la operación solicitada.");
}

}  // namespace

RowStream& StreamRecordset::openRows() const {
    if (!rows_) throw RuntimeError(ErrorNumber::ObjectClosed);
    return *rows_;
}

/// One row on. An error of the list leaves the recordset without a current row.
void StreamRecordset::advance(Position reached, Position exhausted) {
    position_ = exhausted;
    if (rows_->next()) position_ = reached;
}

void StreamRecordset::Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t,
                           std::int32_t, std::int32_t) {
    if (rows_) throw RuntimeError(ErrorNumber::ObjectOpen);
    auto* rowSource = dynamic_cast<RowSource*>(connection.shared().get());
    if (rowSource == nullptr || connection->State() == adStateClosed) {
        throw RuntimeError(
            adErrInvalidConnection,
            "La conexión no puede usarse para realizar esta operación. Está cerrada o no es válida en este "
            "contexto.");
    }
    rows_ = rowSource->openRows(source);
    try {
        advance(Position::FirstRow, Position::Empty);
    } catch (...) {
        rows_.reset();
        throw;
    }
    connection_ = connection;
}

void StreamRecordset::Close() {
    openRows();
    rows_.reset();
    connection_.reset();
}

bool StreamRecordset::Bof() const {
    openRows();
    return position_ == Position::Empty;
}

bool StreamRecordset::Eof() const {
    openRows();
    return position_ == Position::Empty || position_ == Position::PastTheEnd;
}

void StreamRecordset::MoveFirst() {
    RowStream& rows = openRows();
    if (position_ == Position::Empty) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    if (position_ == Position::FirstRow) return;
    rows.rewind();
    advance(Position::FirstRow, Position::Empty);
    if (position_ == Position::Empty) throw RuntimeError(ErrorNumber::NoCurrentRecord);
}

void StreamRecordset::MoveNext() {
    if (Eof()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    advance(Position::LaterRow, Position::PastTheEnd);
}

std::int32_t StreamRecordset::RecordCount() const {
    openRows();
    return -1;
}

void StreamRecordset::AbsolutePosition(std::int32_t) {
    openRows();
    raiseNotAvailable();
}

std::string StreamRecordset::FieldName(std::int32_t position) const {
    const RowStream& rows = openRows();
    if (position < 0 || position >= rows.columnCount()) throw RuntimeError(ErrorNumber::ItemNotFound);
    return rows.columnName(position);
}

Variant StreamRecordset::Fields(std::int32_t position) const {
    const RowStream& rows = openRows();
    if (position < 0 || position >= rows.columnCount()) throw RuntimeError(ErrorNumber::ItemNotFound);
    if (Eof()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    return rows.value(position);
}

Variant StreamRecordset::Fields(std::string_view name) const {
    const RowStream& rows = openRows();
    std::int32_t position = 0;
    while (position < rows.columnCount() && !equalIgnoringAsciiCase(rows.columnName(position), name))
        ++position;
    return Fields(position);
}

ObjectRef<Recordset> StreamRecordset::Clone() const {
    openRows();
    raiseNotAvailable();
}

}  // namespace pxtarvo::portable
