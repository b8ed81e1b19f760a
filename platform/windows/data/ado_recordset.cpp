#include "platform/windows/data/ado_recordset.h"

#include <algorithm>

#include "platform/windows/data/ado_connection.h"

namespace pxtarvo::windows {

void AdoRecordset::forgetFields() noexcept {
    byPosition_.clear();
    byName_.clear();
    fields_ = Dispatch();
}

const Dispatch& AdoRecordset::fields() const {
    if (!fields_) fields_ = recordset_.object(u"Fields");
    return fields_;
}

const Dispatch& AdoRecordset::field(std::int32_t position) const {
    const auto place = static_cast<std::size_t>(position);
    if (position >= 0 && place < byPosition_.size() && byPosition_[place]) return byPosition_[place];
    Dispatch found = fields().object(u"Item", OwnedVariant(position));
    if (place >= byPosition_.size()) byPosition_.resize(place + 1);
    return byPosition_[place] = std::move(found);
}

void AdoRecordset::Open(std::string_view source, const ObjectRef<Connection>& connection,
                        std::int32_t cursorType, std::int32_t lockType, std::int32_t options) {
    forgetFields();
    recordset_.run(u"Open", OwnedVariant(source), OwnedVariant(AdoConnection::objectOf(connection)),
                   OwnedVariant(cursorType), OwnedVariant(lockType), OwnedVariant(options));
}

void AdoRecordset::Close() {
    forgetFields();
    recordset_.run(u"Close");
}

std::int32_t AdoRecordset::AbsolutePosition() const {
    // Before the first and past the last row ADO answers with codes of its own, all negative.
    return std::max(recordset_.number(u"AbsolutePosition"), std::int32_t{-1});
}

Variant AdoRecordset::Fields(std::string_view name) const {
    auto known = std::ranges::find(byName_, name, &std::pair<std::string, Dispatch>::first);
    if (known == byName_.end()) {
        byName_.emplace_back(name, fields().object(u"Item", OwnedVariant(name)));
        known = std::prev(byName_.end());
    }
    return known->second.value(u"Value");
}

}  // namespace pxtarvo::windows
