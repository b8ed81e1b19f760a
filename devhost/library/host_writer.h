#pragma once

// The writes of a host on its database. A run's writes are few statements repeated with other values: each is
// composed once, from then on only its values are handed over.

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/record/host_write.h"
#include "platform/portable/sqlite/sqlite_connection.h"
#include "platform/values/locale.h"

namespace pxtarvo::devhost {

class HostWriter {
  public:
    /// The locale must outlive the writer.
    HostWriter(const ObjectRef<Connection>& connection, const Locale& locale);

    /// Runs the write as one statement. A column's kind says what its value is stored as: 0 as 0 or 1, 1 as a
    /// whole number (halves rounded to the even one), 2 as a number (a text read as the user writes numbers),
    /// 3 as a text, 4 as a DD/MM/YYYY text, 6 is an SQL expression; Null is Null in every kind. Raises the
    /// provider's error, the conversion's for a value that the kind cannot take, 5 for an unknown kind.
    void run(const HostWrite& write);

  private:
    /// A column of a statement: its value is bound, or is this expression.
    struct Column {
        std::string name;
        std::string expression;
    };
    /// Writes that differ in their values only.
    struct Form {
        WriteKind kind;
        std::string table;
        std::string where;  ///< the condition's shape
        std::vector<Column> columns;
        portable::BoundStatement statement;

        bool serves(const HostWrite& write, std::string_view where) const;
    };

    /// Fills values_ with those of the columns that hold no expression.
    void takeValues(const HostWrite& write);
    portable::LiteralValue valueOf(const WrittenColumn& column);
    std::string_view kept(std::string text);
    /// False, and nothing done, for a write that must be composed.
    bool runBound(const HostWrite& write);
    /// The form that serves the write; nullptr where there can be none.
    Form* formOf(const HostWrite& write);

    ObjectRef<Connection> connection_;
    portable::SqliteConnection* database_;  ///< the connection, where it takes values
    const Locale& locale_;
    std::vector<Form> forms_;
    std::size_t next_ = 0;  ///< of forms_, likely to serve the next write: runs repeat their order
    std::vector<portable::LiteralValue> values_;
    std::deque<std::string> texts_;   ///< those of values_ that no column holds
    portable::StatementShape where_;  ///< of the write's condition
};

}  // namespace pxtarvo::devhost
