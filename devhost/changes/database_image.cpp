#include "devhost/changes/database_image.h"

#include <new>
#include <span>

namespace pxtarvo::devhost {

namespace {

/// Where a database file says how it is written and read, and the value for one without a log beside it
/// (https://sqlite.org/fileformat.html): an image has no log.
constexpr std::size_t fileVersions = 18;
constexpr unsigned char withoutLog = 1;

void require(int result, sqlite3* connection) {
    if (result != SQLITE_OK) throw portable::providerError(connection);
}

}  // namespace

DatabaseImage::DatabaseImage(sqlite3* database) : bytes_(sqlite3_serialize(database, "main", &size_, 0)) {
    if (!bytes_) throw std::bad_alloc();
    const std::span bytes(static_cast<unsigned char*>(bytes_.get()), static_cast<std::size_t>(size_));
    for (unsigned char& version : bytes.subspan(fileVersions, 2)) version = withoutLog;
}

void DatabaseImage::showIn(sqlite3* connection, const char* schema) const {
    require(sqlite3_deserialize(connection, schema, static_cast<unsigned char*>(bytes_.get()), size_, size_,
                                SQLITE_DESERIALIZE_READONLY),
            connection);
}

portable::DatabaseHandle BeforeAndAfter::open() const {
    sqlite3* opened = nullptr;
    constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY | SQLITE_OPEN_NOMUTEX;
    const int result = sqlite3_open_v2(":memory:", &opened, flags, nullptr);
    portable::DatabaseHandle connection(opened);
    require(result, opened);
    after.showIn(opened, "main");
    portable::run(opened, "ATTACH ':memory:' AS antes");
    before.showIn(opened, beforeSchema);
    return connection;
}

}  // namespace pxtarvo::devhost
