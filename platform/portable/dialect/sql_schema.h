#pragma once

// The tables of a database file and the declared types of their columns: what translating a statement needs.

#include <string>
#include <string_view>
#include <vector>

#include "platform/portable/dialect/column_types.h"

namespace pxtarvo::portable {

struct SqlColumn {
    std::string name;
    ColumnDeclaration declaration;
};

/// A table or a view.
struct SqlTable {
    std::string name;
    std::vector<SqlColumn> columns;
    std::string key{};  ///< the column that is the primary key by itself, empty for none
    /// Case is ignored; nullptr for an unknown name.
    const SqlColumn* column(std::string_view name) const;
};

struct SqlSchema {
    std::vector<SqlTable> tables;
    /// Case is ignored; nullptr for an unknown name.
    const SqlTable* table(std::string_view name) const;
};

}  // namespace pxtarvo::portable
