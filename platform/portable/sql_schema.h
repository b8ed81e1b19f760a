#pragma once

// The tables of a database file and the declared types of their columns: what translating a statement needs.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/portable/column_types.h"

struct sqlite3;

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

class SqlSchema {
  public:
    /// Reads it anew when the file's schema is another one than at the last call; true when it is. Raises the
    /// provider's error.
    bool refresh(sqlite3* database);
    /// Case is ignored; nullptr for an unknown name.
    const SqlTable* table(std::string_view name) const;

  private:
    std::vector<SqlTable> tables_;
    std::optional<std::int64_t> version_;
};

}  // namespace pxtarvo::portable
