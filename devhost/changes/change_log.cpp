#include "devhost/changes/change_log.h"

#include <sqlite3.h>

#include <stdexcept>
#include <utility>

#include "devhost/changes/table_columns.h"
#include "host/tables.h"

namespace pxtarvo::devhost {

namespace {

void require(int result, sqlite3* database) {
    if (result == SQLITE_NOMEM) throw std::bad_alloc();
    if (result != SQLITE_OK) throw portable::providerError(database);
}

}  // namespace

void ChangeLog::EndSession::operator()(sqlite3_session* session) const noexcept {
    sqlite3session_delete(session);
}

ChangeLog::ChangeLog(ObjectRef<portable::SqliteConnection> connection) : connection_(std::move(connection)) {
    sqlite3* const database = connection_->handle();
    sqlite3_session* session = nullptr;
    require(sqlite3session_create(database, "main", &session), database);
    session_.reset(session);
    for (const Tabla& table : tablasHost) {
        const std::string name(table.sNombre);
        const TableColumns columns(database, name);
        if (columns.exists() && columns.key() < 0) {
            throw std::runtime_error("the rows of table " + name +
                                     " have no key, so their changes cannot be kept; 'save' the database and "
                                     "'load' it into a new one");
        }
        require(sqlite3session_attach(session, name.c_str()), database);
    }
}

std::string ChangeLog::changes() const {
    int size = 0;
    void* bytes = nullptr;
    const int result = sqlite3session_changeset(session_.get(), &size, &bytes);
    const portable::SqliteMemory owner(bytes);
    require(result, connection_->handle());
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

}  // namespace pxtarvo::devhost
