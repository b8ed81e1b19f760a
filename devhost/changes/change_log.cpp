#include "devhost/changes/change_log.h"

#include <stdexcept>
#include <string>
#include <utility>

#include "devhost/changes/table_columns.h"
#include "host/tables.h"

namespace pxtarvo::devhost {

namespace {

/// The database, whose tables can be compared.
sqlite3* withKeys(sqlite3* database) {
    for (const Tabla& table : tablasHost) {
        const TableColumns columns(database, table.sNombre);
        if (columns.exists() && columns.key() < 0) {
            throw std::runtime_error("the rows of table " + std::string(table.sNombre) +
                                     " have no key, so their changes cannot be kept; 'save' the database and "
                                     "'load' it into a new one");
        }
    }
    return database;
}

std::int64_t versionOf(sqlite3* database) {
    const auto query = portable::prepare(database, "PRAGMA data_version");
    portable::step(query.get());
    return sqlite3_column_int64(query.get(), 0);
}

}  // namespace

ChangeLog::ChangeLog(ObjectRef<portable::SqliteConnection> connection)
    : connection_(std::move(connection)),
      version_(versionOf(withKeys(connection_->handle()))),
      before_(connection_->handle()) {}

BeforeAndAfter ChangeLog::end() {
    sqlite3* const database = connection_->handle();
    DatabaseImage after(database);
    if (versionOf(database) != version_) {
        throw std::runtime_error(
            "another program wrote into the database during the run; what the run itself changed cannot be told");
    }
    return {std::move(before_), std::move(after)};
}

}  // namespace pxtarvo::devhost
