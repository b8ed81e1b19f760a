#include "devhost/exchange/table_files.h"

#include <algorithm>
#include <stdexcept>

#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::string_view ending = ".csv";

}  // namespace

FolderFiles findTableFiles(const std::filesystem::path& folder) {
    FolderFiles found;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::filesystem::path& path = entry.path();
        if (!equalIgnoringAsciiCase(path.extension().string(), ending)) continue;
        const std::string name = path.stem().string();
        const auto* const table = std::ranges::find_if(
            tablasHost, [&](const Tabla& known) { return equalIgnoringAsciiCase(known.sNombre, name); });
        if (table != std::end(tablasHost)) {
            found.tables.push_back({table, path});
        } else {
            found.others.push_back(path.filename().string());
        }
    }
    std::ranges::sort(found.others);
    std::ranges::sort(found.tables, {}, &TableFile::table);
    const auto twice = std::ranges::adjacent_find(found.tables, {}, &TableFile::table);
    if (twice != found.tables.end()) {
        throw std::runtime_error(
            joined({twice->name(), " and ", std::next(twice)->name(), " are of the same table"}));
    }
    return found;
}

}  // namespace pxtarvo::devhost
