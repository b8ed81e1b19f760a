#include "platform/client_recordset.h"

#include <algorithm>
#include <variant>

#include "platform/values/text.h"

namespace pxtarvo {

namespace {

class CopiedRows final : public ResultRows {
  public:
    explicit CopiedRows(Recordset& result) : ResultRows(copiedNames_) {
        const std::int32_t count = result.FieldCount();
        for (std::int32_t field = 0; field < count; ++field) copiedNames_.push_back(result.FieldName(field));
        for (; !result.Eof(); result.MoveNext(), ++rowCount_) {
            for (std::int32_t field = 0; field < count; ++field) values_.push_back(valueOf(result, field));
        }
    }

    std::size_t rowCount() const noexcept override { return rowCount_; }
    Variant value(std::size_t row, std::size_t column) const override {
        const Value& value = values_[row * copiedNames_.size() + column];
        if (const auto* error = std::get_if<RuntimeError>(&value)) throw *error;
        return std::get<Variant>(value);
    }

  private:
    /// A value, or why it could not be read.
    using Value = std::variant<Variant, RuntimeError>;

    static Value valueOf(const Recordset& result, std::int32_t field) {
        try {
            return result.Fields(field);
        } catch (const RuntimeError& error) {
            return error;
        }
    }

    std::vector<std::string> copiedNames_;
    std::vector<Value> values_;  ///< row after row
    std::size_t rowCount_ = 0;
};

}  // namespace

std::shared_ptr<const ResultRows> readToEnd(Recordset& result) {
    return std::make_shared<CopiedRows>(result);
}

const ResultRows& ClientRecordset::rows() const {
    if (!rows_) throw RuntimeError(ErrorNumber::ObjectClosed);
    return *rows_;
}

std::size_t ClientRecordset::column(std::int32_t position) const {
    if (position < 0 || position >= FieldCount()) throw RuntimeError(ErrorNumber::ItemNotFound);
    return static_cast<std::size_t>(position);
}

void ClientRecordset::Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t,
                           std::int32_t, std::int32_t options) {
    if (rows_) throw RuntimeError(ErrorNumber::ObjectOpen);
    const ObjectRef<Recordset> result = connection->Execute(source, options);
    if (result->State() == adStateClosed) return;
    rows_ = readToEnd(*result);
    current_ = 0;
}

void ClientRecordset::Close() {
    rows();
    rows_.reset();
}

void ClientRecordset::MoveFirst() {
    if (Bof()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    current_ = 0;
}

void ClientRecordset::MoveNext() {
    if (ClientRecordset::Eof()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    ++current_;
}

std::int32_t ClientRecordset::AbsolutePosition() const {
    return Eof() ? -1 : static_cast<std::int32_t>(current_) + 1;
}

void ClientRecordset::AbsolutePosition(std::int32_t position) {
    if (position < 1 || position > RecordCount()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    current_ = static_cast<std::size_t>(position) - 1;
}

std::string ClientRecordset::FieldName(std::int32_t position) const {
    return rows().names()[column(position)];
}

Variant ClientRecordset::Fields(std::int32_t position) const {
    const std::size_t wanted = column(position);
    if (ClientRecordset::Eof()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    return rows_->value(current_, wanted);
}

Variant ClientRecordset::Fields(std::string_view name) const {
    const auto& names = rows().names();
    const auto named = std::ranges::find_if(names, [name](const std::string& known) {
        return known.size() == name.size() && equalIgnoringAsciiCase(known, name);
    });
    return ClientRecordset::Fields(static_cast<std::int32_t>(named - names.begin()));  // 3265 for the end
}

ObjectRef<Recordset> ClientRecordset::Clone() const {
    rows();
    return makeObject<ClientRecordset>(rows_);
}

}  // namespace pxtarvo
