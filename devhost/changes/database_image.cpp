#include "devhost/changes/database_image.h"

#include <limits>
#include <new>
#include <span>
#include <stdexcept>
#include <string_view>

#include "platform/values/text.h"

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

DatabaseImage::DatabaseImage(sqlite3* database) {
    readFile(database);
    if (!bytes_) bytes_.reset(sqlite3_serialize(database, "main", &size_, 0));
    if (!bytes_ && size_ == 0) throw std::runtime_error("the database is empty, without even a table");
    if (!bytes_) throw std::bad_alloc();
    const std::span bytes(static_cast<unsigned char*>(bytes_.get()), static_cast<std::size_t>(size_));
    for (unsigned char& version : bytes.subspan(fileVersions, 2)) version = withoutLog;
}

/// A file that holds all of its database is read in one piece, in a third of the time that its pages take.
/// What has none, an empty one and one too large for one reading are left to SQLite.
void DatabaseImage::readFile(sqlite3* database) {
    const auto journal = portable::prepare(database, "PRAGMA main.journal_mode");
    portable::step(journal.get());
    const std::string_view mode = reinterpret_cast<const char*>(sqlite3_column_text(journal.get(), 0));
    sqlite3_file* file = nullptr;
    sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file));
    if (mode != "delete" || !file || !file->pMethods) return;
    const auto reading = portable::prepare(database, "SELECT 1 FROM main.sqlite_master");
    portable::step(reading.get());  // until it ends nobody writes
    constexpr int most = std::numeric_limits<int>::max();
    if (file->pMethods->xFileSize(file, &size_) != SQLITE_OK || size_ == 0 || size_ > most) return;
    bytes_.reset(sqlite3_malloc64(static_cast<sqlite3_uint64>(size_)));
    if (!bytes_) throw std::bad_alloc();
    if (file->pMethods->xRead(file, bytes_.get(), static_cast<int>(size_), 0) != SQLITE_OK) bytes_.reset();
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
    portable::run(opened, joined({"ATTACH ':memory:' AS ", beforeSchema}).c_str());
    before.showIn(opened, beforeSchema);
    return connection;
}

}  // namespace pxtarvo::devhost
