#include "devhost/changes/change_log.h"

#include <sqlite3.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "devhost/changes/table_columns.h"
#include "host/tables.h"

namespace pxtarvo::devhost {

namespace {

struct EndSession {
    void operator()(sqlite3_session* session) const noexcept { sqlite3session_delete(session); }
};
using Session = std::unique_ptr<sqlite3_session, EndSession>;

void require(int result, sqlite3* database) {
    if (result == SQLITE_NOMEM) throw std::bad_alloc();
    if (result != SQLITE_OK) throw portable::providerError(database);
}

std::int64_t versionOf(sqlite3* database) {
    const auto query = portable::prepare(database, "PRAGMA data_version");
    portable::step(query.get());
    return sqlite3_column_int64(query.get(), 0);
}

/// The database as it was, attached while this lives.
class Before {
  public:
    Before(sqlite3* database, portable::SqliteMemory bytes, std::int64_t size) : database_(database) {
        portable::run(database, "ATTACH ':memory:' AS antes");
        constexpr unsigned flags = SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_READONLY;
        // SQLite frees the bytes, also where this fails.
        auto* const content = static_cast<unsigned char*>(bytes.release());
        require(sqlite3_deserialize(database, name, content, size, size, flags), database);
    }
    ~Before() { sqlite3_exec(database_, "DETACH antes", nullptr, nullptr, nullptr); }
    Before(const Before&) = delete;
    Before& operator=(const Before&) = delete;

    static constexpr const char* name = "antes";

  private:
    sqlite3* database_;
};

}  // namespace

ChangeLog::ChangeLog(ObjectRef<portable::SqliteConnection> connection) : connection_(std::move(connection)) {
    sqlite3* const database = connection_->handle();
    for (const Tabla& table : tablasHost) {
        const TableColumns columns(database, table.sNombre);
        if (columns.exists() && columns.key() < 0) {
            throw std::runtime_error("the rows of table " + std::string(table.sNombre) +
                                     " have no key, so their changes cannot be kept; 'save' the database and "
                                     "'load' it into a new one");
        }
    }
    version_ = versionOf(database);
    sqlite3_int64 size = 0;
    before_.reset(sqlite3_serialize(database, "main", &size, 0));
    if (!before_) throw portable::providerError(database);
    size_ = size;
}

std::string ChangeLog::changes() {
    sqlite3* const database = connection_->handle();
    if (versionOf(database) != version_) {
        throw std::runtime_error(
            "another program wrote into the database during the run; what the run itself changed cannot be told");
    }
    const Before before(database, std::move(before_), size_);
    sqlite3_session* started = nullptr;
    require(sqlite3session_create(database, "main", &started), database);
    const Session session(started);
    for (const Tabla& table : tablasHost) {
        const std::string name(table.sNombre);
        if (!TableColumns(database, name).exists()) continue;
        require(sqlite3session_attach(session.get(), name.c_str()), database);
        require(sqlite3session_diff(session.get(), Before::name, name.c_str(), nullptr), database);
    }
    int size = 0;
    void* bytes = nullptr;
    const int result = sqlite3session_changeset(session.get(), &size, &bytes);
    const portable::SqliteMemory owner(bytes);
    require(result, database);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

}  // namespace pxtarvo::devhost
