#include "devhost/main/database_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace pxtarvo::devhost {

void addDatabaseOption(CLI::App& command, std::string& database) {
    command.add_option("DB", database, "the database file")->required()->check([](const std::string& path) {
        return path.empty() ? "the name is empty" : std::string();
    });
}

std::optional<std::string> missingDatabase(const std::string& path) {
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown)) return "'" + path + "' is a folder, no database";
    if (std::filesystem::exists(path, unknown)) return std::nullopt;
    return "there is no database '" + path + "': init makes a new one, load one from CSV files";
}

std::optional<std::string> fileTrouble(const std::string& path) {
    const std::string quoted = "'" + path + "'";
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown)) return quoted + " is a folder";
    if (access(path.c_str(), R_OK) == 0) return std::nullopt;
    const int reason = errno;
    if (reason == ENOENT || reason == ENOTDIR) return quoted + " does not exist";
    return quoted + " cannot be read: " + std::strerror(reason);
}

}  // namespace pxtarvo::devhost
