#pragma once

// The columns of a table of an open database, by position and by name.

#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace pxtarvo::devhost {

class TableColumns {
  public:
    /// Raises the provider's error.
    TableColumns(sqlite3* database, std::string_view table);

    bool exists() const noexcept { return !names_.empty(); }
    const std::vector<std::string>& names() const noexcept { return names_; }
    /// 0-based, -1 where there is none of this name, whatever its case.
    int position(std::string_view column) const;
    /// The position of the key, -1 where rows have none, or one that is not one whole number.
    int key() const noexcept { return key_; }

  private:
    std::vector<std::string> names_;
    int key_ = -1;
};

}  // namespace pxtarvo::devhost
