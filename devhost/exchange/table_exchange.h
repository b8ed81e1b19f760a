#pragma once

// The host's tables as CSV files: read into a database, and written from it.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

/// How far loading or saving has come.
struct ExchangeProgress {
    std::string_view file;  ///< its name without the folder
    std::size_t rows = 0;   ///< of this file
    double share = 0;       ///< of everything, 0 to 1
};

/// Who is told of the course of loading and saving; both may be empty.
struct ExchangeWatcher {
    std::function<void(const std::string& remark)> remarked;  ///< something is left out or added; one line
    std::function<void(const ExchangeProgress& progress)> progressed;  ///< every few thousand rows
};

/// A table of which a file was read or written.
struct ExchangedTable {
    std::string file;  ///< its name without the folder
    std::size_t rows = 0;
};

inline constexpr std::size_t rowsBetweenProgress = 4096;

/// Adds the rows of the folder's files, one TABLE.csv a table of the host, to its tables, in one transaction.
/// The first line of a file names its columns, in any order and case: what is no column of the table is left
/// out, what the file lacks is Null. Raises std::runtime_error with file, line, column and reason for what
/// does not fit, the provider's error for the database's own troubles; nothing is added then.
std::vector<ExchangedTable> loadTables(portable::SqliteConnection& connection,
                                       const std::filesystem::path& folder, const ExchangeWatcher& watcher);

/// Writes every table of the host into a file TABLE.csv of the folder, which is made where it is missing, all
/// as the database is at one moment: UTF-8, commas, quotes where they are needed, Null as an empty cell and
/// an empty text as "", dates as YYYY-MM-DD HH:MM:SS, decimals with a point. Raises std::runtime_error where
/// a file of a table is there already, for a value that no such file can hold and for a file that cannot be
/// written, the provider's error for the database's own troubles; no file is left then.
std::vector<ExchangedTable> saveTables(portable::SqliteConnection& connection,
                                       const std::filesystem::path& folder, const ExchangeWatcher& watcher);

}  // namespace pxtarvo::devhost
