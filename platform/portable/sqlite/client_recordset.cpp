#include "platform/portable/sqlite/client_recordset.h"

#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

std::shared_ptr<const ResultRows> rowsOfValues(const std::vector<std::string>& names,
                                               std::vector<std::vector<Variant>> rows) {
    auto columns = std::make_shared<ResultColumns>();
    for (const std::string& name : names) columns->push_back({name, {}});
    return std::make_shared<VariantRows>(std::move(columns), std::move(rows));
}

}  // namespace

ClientRecordset::ClientRecordset(const std::vector<std::string>& names,
                                 std::vector<std::vector<Variant>> rows)
    : rows_(rowsOfValues(names, std::move(rows))) {}

const ResultRows& ClientRecordset::rows() const {
    if (!rows_) throw RuntimeError(ErrorNumber::ObjectClosed);
    return *rows_;
}

void ClientRecordset::Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t,
                           std::int32_t, std::int32_t options) {
    if (rows_) throw RuntimeError(ErrorNumber::ObjectOpen);
    const ObjectRef<Recordset> result = connection->Execute(source, options);
    if (result->State() == adStateClosed) return;
    std::vector<std::string> names;
    for (std::int32_t column = 0; column < result->FieldCount(); ++column)
        names.push_back(result->FieldName(column));
    std::vector<std::vector<Variant>> copied;
    for (; !result->Eof(); result->MoveNext()) {
        std::vector<Variant>& row = copied.emplace_back();
        for (std::int32_t column = 0; column < result->FieldCount(); ++column)
            row.push_back(result->Fields(column));
    }
    rows_ = rowsOfValues(names, std::move(copied));
    current_ = 0;
}

void ClientRecordset::Close() {
    rows();
    rows_.reset();
    walk_.reset();
}

bool ClientRecordset::Bof() const {
    return rows().rowCount() == 0;
}

bool ClientRecordset::Eof() const {
    return current_ >= rows().rowCount();
}

void ClientRecordset::MoveFirst() {
    if (rows().rowCount() == 0) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    current_ = 0;
}

void ClientRecordset::MoveNext() {
    if (Eof()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    ++current_;
    if (Eof()) {
        walk_.reset();
    } else if (!walk_) {
        if (auto hold = hold_.lock()) walk_ = std::make_unique<ReadHold::Walk>(std::move(hold));
    }
}

std::int32_t ClientRecordset::RecordCount() const {
    return static_cast<std::int32_t>(rows().rowCount());
}

std::int32_t ClientRecordset::AbsolutePosition() const {
    return Eof() ? -1 : static_cast<std::int32_t>(current_) + 1;
}

void ClientRecordset::AbsolutePosition(std::int32_t position) {
    if (position < 1 || position > RecordCount()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    current_ = static_cast<std::size_t>(position) - 1;
}

std::int32_t ClientRecordset::FieldCount() const {
    return static_cast<std::int32_t>(rows().columns().size());
}

std::string ClientRecordset::FieldName(std::int32_t position) const {
    if (position < 0 || position >= FieldCount()) throw RuntimeError(ErrorNumber::ItemNotFound);
    return rows().columns()[static_cast<std::size_t>(position)].name;
}

Variant ClientRecordset::Fields(std::int32_t position) const {
    if (position < 0 || position >= FieldCount()) throw RuntimeError(ErrorNumber::ItemNotFound);
    if (Eof()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    return rows_->value(current_, static_cast<std::size_t>(position));
}

Variant ClientRecordset::Fields(std::string_view name) const {
    const ResultColumns& columns = rows().columns();
    for (std::size_t position = 0; position < columns.size(); ++position) {
        if (columns[position].name.size() == name.size() &&
            equalIgnoringAsciiCase(columns[position].name, name)) {
            return Fields(static_cast<std::int32_t>(position));
        }
    }
    throw RuntimeError(ErrorNumber::ItemNotFound);
}

ObjectRef<Recordset> ClientRecordset::Clone() const {
    rows();
    return makeObject<ClientRecordset>(rows_);
}

}  // namespace pxtarvo::portable
