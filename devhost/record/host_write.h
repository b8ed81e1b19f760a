#pragma once

// One write of the host's table writer, as the record, the checks and the tests see it.

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/values/variant.h"

namespace pxtarvo::devhost {

enum class WriteKind { Insert, Update, Delete };
/// Of each kind, in the record and in reports.
inline constexpr std::string_view writeNames[] = {"insert", "update", "delete"};

struct WrittenColumn {
    std::string name;
    std::int32_t nTipo = 0;  ///< a Tipo of host/tables.h
    Variant value;
};

struct HostWrite {
    WriteKind kind;
    std::string_view table;
    std::string_view condition;  ///< with its leading " WHERE "; empty for an insert
    std::span<const WrittenColumn> columns;
};

/// Asked before each write. A text refuses the write with it as the message; a RuntimeError raised in it
/// fails the call itself.
using WriteHook = std::function<std::optional<std::string>(const HostWrite&)>;

}  // namespace pxtarvo::devhost
