#pragma once

// The ordinary writes of a run are few statements repeated with other values. Each is composed once; from
// then on only its values are handed to the database.

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/record/host_write.h"
#include "platform/portable/sqlite/sqlite_connection.h"
#include "platform/values/locale.h"

namespace pxtarvo::devhost {

class BoundWrites {
  public:
    /// Both must outlive the object.
    BoundWrites(portable::SqliteConnection& connection, const Locale& locale)
        : connection_(connection), locale_(locale) {}

    /// Does what executing the composed statement of `write` does, and raises the same. False, and nothing
    /// done, for a write that must be composed: one with Null, with an expression other than the server's
    /// date, or with a condition other than " WHERE column = number".
    bool run(const HostWrite& write);

  private:
    struct Column {
        std::string name;
        std::int32_t nTipo = 0;
    };
    /// Writes that differ in their values only.
    struct Form {
        WriteKind kind;
        std::string table;
        std::string where;  ///< the condition up to its number
        std::vector<Column> columns;
        portable::BoundStatement statement;

        bool serves(const HostWrite& write, std::string_view where) const;
    };

    /// Fills values_; false where a value must be composed.
    bool takeValues(const HostWrite& write);
    void takeText(std::string text);
    /// The form that serves the write; nullptr where a name in it is more than a plain word.
    Form* formOf(const HostWrite& write, std::string_view where);

    portable::SqliteConnection& connection_;
    const Locale& locale_;
    std::vector<Form> forms_;
    std::size_t next_ = 0;  ///< of forms_, likely to serve the next write: runs repeat their order
    std::vector<portable::LiteralValue> values_;
    std::deque<std::string> texts_;  ///< those of values_ that no column holds
};

}  // namespace pxtarvo::devhost
