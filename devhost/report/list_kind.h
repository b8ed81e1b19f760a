#pragma once

// The kinds of lists that the import window takes, as far as a report on one must know them.

#include <optional>
#include <string>
#include <string_view>

#include "import/list_columns.h"

namespace pxtarvo::devhost {

struct ListKind {
    std::string_view table{};  ///< in an Access file; empty for a workbook
    ColumnasLista columns;
    /// Whether the import knows the discount group; empty where the list has none.
    bool (*knowsGroup)(std::string_view group) = nullptr;
    bool groupCarriesOver = false;  ///< a row of an unknown group takes the text of the last known one
};

/// The list that the window imports for a year and "same" or "ama"; nothing where it has no such import.
std::optional<ListKind> listKind(std::string_view year, std::string_view list);

}  // namespace pxtarvo::devhost
