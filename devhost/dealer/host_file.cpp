#include "devhost/dealer/host_file.h"

#include <filesystem>
#include <system_error>

#include "devhost/dealer/sample_dealer.h"
#include "devhost/dealer/schema.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::int32_t fileAlreadyExists = 58;  // the language run time's number

struct HostFile {
    HostFile(const std::string& path, std::shared_ptr<const Clock> hostClock, portable::DatabaseMode mode)
        : clock(std::move(hostClock)), connection(path, *clock, mode) {}

    std::shared_ptr<const Clock> clock;
    portable::SqliteConnection connection;
};

ObjectRef<portable::SqliteConnection> open(const std::string& path, std::shared_ptr<const Clock> clock,
                                           portable::DatabaseMode mode) {
    // An absolute path, as SQLite gives some names (":memory:") a meaning of their own.
    const std::string absolute = std::filesystem::absolute(path).string();
    auto file = std::make_shared<HostFile>(absolute, std::move(clock), mode);
    return std::shared_ptr<portable::SqliteConnection>(file, &file->connection);
}

ObjectRef<portable::SqliteConnection> inMemory(std::shared_ptr<const Clock> clock) {
    auto memory =
        std::make_shared<HostFile>(":memory:", std::move(clock), portable::DatabaseMode::CreateIfMissing);
    return std::shared_ptr<portable::SqliteConnection>(memory, &memory->connection);
}

/// What an interrupted transaction leaves beside a database file; the next file of that name takes it for its
/// own.
std::filesystem::path journalOf(std::filesystem::path file) {
    return file += "-journal";
}

void discard(const std::filesystem::path& file) {
    std::error_code ignored;
    std::filesystem::remove(journalOf(file), ignored);
    std::filesystem::remove(file, ignored);
}

}  // namespace

ObjectRef<portable::SqliteConnection> openHostFile(const std::string& path,
                                                   std::shared_ptr<const Clock> clock) {
    return open(path, std::move(clock), portable::DatabaseMode::Existing);
}

ObjectRef<portable::SqliteConnection> openHostCopy(const std::string& path,
                                                   std::shared_ptr<const Clock> clock) {
    const auto file = openHostFile(path, clock);
    auto memory = inMemory(std::move(clock));
    portable::copyDatabase(file->handle(), memory->handle());
    return memory;
}

ObjectRef<portable::SqliteConnection> openEmptyHost(std::shared_ptr<const Clock> clock) {
    auto memory = inMemory(std::move(clock));
    createSchema(*memory);
    return memory;
}

void createHostFile(const std::string& path, std::shared_ptr<const Clock> clock, bool sample) {
    createFilledHostFile(path, std::move(clock), [=](portable::SqliteConnection& connection) {
        if (sample) fillSampleDealer(connection);
    });
}

void createFilledHostFile(const std::string& path, std::shared_ptr<const Clock> clock,
                          const std::function<void(portable::SqliteConnection& connection)>& fill) {
    const auto* utf8 = reinterpret_cast<const char8_t*>(path.data());
    const std::filesystem::path file(utf8, utf8 + path.size());
    if (std::filesystem::exists(std::filesystem::symlink_status(file))) {
        throw RuntimeError(fileAlreadyExists, "El archivo '" + path + "' ya existe.");
    }
    // Under a name of its own until it is whole: one that was interrupted is in nobody's way.
    const std::filesystem::path unfinished = std::filesystem::path(file) += ".unfinished";
    discard(unfinished);
    try {
        {
            const auto connection =
                open(path + ".unfinished", std::move(clock), portable::DatabaseMode::CreateIfMissing);
            createSchema(*connection);
            fill(*connection);
        }
        std::filesystem::remove(journalOf(file));
        std::filesystem::rename(unfinished, file);
    } catch (...) {
        discard(unfinished);
        throw;
    }
}

}  // namespace pxtarvo::devhost
