#pragma once

// The host's database file: opened for a session, or made anew.

#include <functional>
#include <memory>
#include <string>

#include "platform/portable/sqlite/sqlite_connection.h"
#include "platform/values/clock.h"

namespace pxtarvo::devhost {

/// The connection to an existing file (UTF-8 path), which keeps the clock that gives its statements the time.
/// Raises the provider's error for a file that is missing or no database.
ObjectRef<portable::SqliteConnection> openHostFile(const std::string& path,
                                                   std::shared_ptr<const Clock> clock);

/// The connection to a copy of the file in memory, which goes with it: whatever is done over it, the file
/// stays as it is. Raises as openHostFile.
ObjectRef<portable::SqliteConnection> openHostCopy(const std::string& path,
                                                   std::shared_ptr<const Clock> clock);

/// The connection to the host's tables in memory, without rows, which go with it.
ObjectRef<portable::SqliteConnection> openEmptyHost(std::shared_ptr<const Clock> clock);

/// Makes a new file with the host's tables, with the sample dealer's rows where `sample` is set. Raises 58
/// when a file of this name exists, the provider's error otherwise, and leaves no file behind then.
void createHostFile(const std::string& path, std::shared_ptr<const Clock> clock, bool sample);

/// The same with the rows that `fill` writes; what it raises is raised, too.
void createFilledHostFile(const std::string& path, std::shared_ptr<const Clock> clock,
                          const std::function<void(portable::SqliteConnection& connection)>& fill);

}  // namespace pxtarvo::devhost
