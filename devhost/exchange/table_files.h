#pragma once

// The CSV files of the host's tables in a folder.

#include <filesystem>
#include <string>
#include <vector>

#include "host/tables.h"

namespace pxtarvo::devhost {

struct TableFile {
    const Tabla* table = nullptr;
    std::filesystem::path path;

    std::string name() const { return path.filename().string(); }
};

struct FolderFiles {
    std::vector<TableFile> tables;    ///< in the order of tablasHost
    std::vector<std::string> others;  ///< names of CSV files of no such table
};

/// Names are compared without regard to case. Raises std::runtime_error for two files of one table and for a
/// folder that cannot be read.
FolderFiles findTableFiles(const std::filesystem::path& folder);

}  // namespace pxtarvo::devhost
