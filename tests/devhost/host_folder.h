#pragma once

// Host databases in a folder of the test's own.

#include <memory>
#include <string>
#include <vector>

#include "devhost/dealer/host_file.h"
#include "devhost/library/host_context.h"
#include "platform/portable/clocks.h"
#include "platform/values/conversion.h"
#include "tests/common/database_state.h"
#include "tests/common/temporary_folder.h"

namespace pxtarvo::tests {

inline const auto hostClock = std::make_shared<portable::FixedClock>(CalendarTime{2012, 7, 25, 10, 30, 0});

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
