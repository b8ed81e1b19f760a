#pragma once

// Host databases in a folder of the test's own.

#include <memory>
#include <string>
#include <vector>

#include "devhost/dealer/host_file.h"
#include "devhost/library/host_context.h"
#include "platform/portable/clocks.h"
#include "platform/values/conversion.h"
#include "tests/common/temporary_folder.h"

namespace pxtarvo::tests {

inline const auto hostClock = std::make_shared<portable::FixedClock>(CalendarTime{2012, 7, 25, 10, 30, 0});

/// The values of a query's rows, columns separated by "|", Null as "NULL".
inline std::vector<std::string> rowsOf(Connection& connection, std::string_view query) {
    std::vector<std::string> lines;
    const ObjectRef<Recordset> result = connection.Execute(query, adOptionUnspecified);
    for (; !result->Eof(); result->MoveNext()) {
        std::string line;
        for (std::int32_t column = 0; column < result->FieldCount(); ++column) {
            const Variant value = result->Fields(column);
            if (column > 0) line += '|';
            line += value.isNull() ? "NULL" : joinedText(value, spanishLocale());
        }
        lines.push_back(line);
    }
    return lines;
}

/// An empty host database and a context over it.
class HostFolder {
  public:
    explicit HostFolder(bool sample = false) {
        devhost::createHostFile(path(), hostClock, sample);
        connection = devhost::openHostFile(path(), hostClock);
        state->connection = connection;
        state->checks = std::make_shared<devhost::ProtocolChecks>();
    }

    std::string path() const { return folder.file("dealer.db"); }
    ObjectRef<HostDatabase> context() const { return makeObject<devhost::DevHostDatabase>(state); }

    /// rowsOf() this database.
    std::vector<std::string> rows(std::string_view query) const { return rowsOf(*connection, query); }

    TemporaryFolder folder;
    ObjectRef<Connection> connection;
    std::shared_ptr<devhost::HostState> state = std::make_shared<devhost::HostState>();
};

}  // namespace pxtarvo::tests
