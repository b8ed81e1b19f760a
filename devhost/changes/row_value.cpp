#include "devhost/changes/row_value.h"

#include <bit>

namespace pxtarvo::devhost {

std::string_view RowValue::text() const noexcept {
    if (type() == SQLITE_TEXT) return bytes();
    const auto* text = value_ ? reinterpret_cast<const char*>(sqlite3_value_text(value_)) : nullptr;
    return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value_)))
                : std::string_view();
}

std::string_view RowValue::bytes() const noexcept {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value_));
    return {bytes, static_cast<std::size_t>(sqlite3_value_bytes(value_))};
}

bool operator==(const RowValue& one, const RowValue& other) noexcept {
    const int type = one.type();
    if (type != other.type()) return false;
    switch (type) {
        case SQLITE_NULL:
            return true;
        case SQLITE_INTEGER:
            return one.whole() == other.whole();
        case SQLITE_FLOAT:
            return std::bit_cast<std::int64_t>(one.number()) == std::bit_cast<std::int64_t>(other.number());
        default:
            return one.bytes() == other.bytes();
    }
}

}  // namespace pxtarvo::devhost
