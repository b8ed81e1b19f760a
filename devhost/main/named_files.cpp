#include "devhost/main/named_files.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/portable/files/drive_paths.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// What to do about a missing file of the plug-in's own choice.
std::string_view adviceFor(std::string_view path) {
    const bool drive = path.size() >= 2 && path[1] == ':';
    return drive ? "; --file names another one, --drive-c the folder that stands for drive C:" : "";
}

}  // namespace

void addDatabaseOption(CLI::App& command, std::string& database) {
    command.add_option("DB", database, "the database file")->required()->check([](const std::string& path) {
        return path.empty() ? "the name is empty" : std::string();
    });
}

std::optional<std::string> missingDatabase(const std::string& path) {
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown))
        return joined({"'", path, "' is a folder, no database"});
    if (std::filesystem::exists(path, unknown)) return std::nullopt;
    return joined({"there is no database '", path, "': init makes a new one, load one from CSV files"});
}

std::optional<std::string> newDatabaseTrouble(const std::string& path) {
    std::error_code unknown;
    if (std::filesystem::exists(std::filesystem::symlink_status(path, unknown))) {
        return joined({"'", path, "' exists already"});
    }
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    if (folder.empty() || std::filesystem::is_directory(folder, unknown)) return std::nullopt;
    return joined({"the folder of '", path, "' does not exist"});
}

std::optional<std::string> unreadableFile(std::string_view what, std::string_view path,
                                          const std::string& driveC) {
    const std::string place = portable::DrivePaths(driveC).resolve(path);
    std::error_code unknown;
    if (std::filesystem::is_directory(place, unknown))
        return joined({"the ", what, " '", path, "' is a folder"});
    if (access(place.c_str(), R_OK) == 0) return std::nullopt;
    const int reason = errno;
    if (reason == ENOENT || reason == ENOTDIR) {
        return joined({"the ", what, " '", path, "' does not exist", adviceFor(path)});
    }
    return joined({"the ", what, " '", path, "' cannot be read: ", std::strerror(reason)});
}

std::optional<std::string> unwritableFile(std::string_view what, std::string_view path,
                                          const std::string& driveC) {
    const std::filesystem::path place = portable::DrivePaths(driveC).resolve(path);
    std::error_code unknown;
    if (std::filesystem::is_directory(place, unknown))
        return joined({"the ", what, " '", path, "' is a folder"});
    const std::filesystem::path folder = place.parent_path();
    if (folder.empty() || std::filesystem::is_directory(folder, unknown)) return std::nullopt;
    return joined({"the folder of the ", what, " '", path, "' does not exist", adviceFor(path)});
}

}  // namespace pxtarvo::devhost
