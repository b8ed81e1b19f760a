#pragma once

// A dealer's tables before and after a run, asked with SQL of the test's own.

#include <map>
#include <string>
#include <string_view>

#include "platform/portable/sqlite/sqlite_handles.h"
#include "tests/rehearsal/report_files.h"

namespace pxtarvo::tests {

class Comparison {
  public:
    /// Both are files. Statements call the one `antes`, the other `despues`, and the list's rows `Lista
    /// (Fila, Codigo, Precio)`: one for each code, the last of them.
    Comparison(const std::string& before, const std::string& after);

    /// Takes the first `rows` rows of the Access file; their codes and prices stand at these positions.
    void readList(const std::string& path, std::string_view table, int pricePosition, int rows);

    /// Numbers with two to four decimals, those of a column called `Cambio` with one; Null is empty.
    Rows rows(std::string_view sql) const;
    double number(std::string_view sql) const;

    /// What the totals of a report must say: each line that is not zero, of so many.
    static constexpr std::size_t totalsKnown = 13;
    std::map<std::string, std::string> totals() const;
    /// What the tables of a report must hold, by the name of their files, in no order.
    std::map<std::string, Rows> tables() const;

  private:
    portable::DatabaseHandle database_;
};

}  // namespace pxtarvo::tests
