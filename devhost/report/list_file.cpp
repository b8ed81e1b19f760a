#include "devhost/report/list_file.h"

#include <sys/stat.h>

#include <ctime>
#include <fstream>

#include "devhost/changes/checksum.h"
#include "platform/portable/access/jet_connection.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

std::optional<ListFile> describeListFile(const std::string& place) {
    struct stat status {};
    if (::stat(place.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    std::ifstream file(place, std::ios::binary);
    if (!file) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    ListFile list;
    list.path = place;
    list.bytes = bytes.size();
    list.sha256 = sha256(bytes);
    std::tm local{};
    char text[sizeof "31/12/2012 23:59"];
    if (localtime_r(&status.st_mtime, &local) &&
        std::strftime(text, sizeof text, "%d/%m/%Y %H:%M", &local) > 0) {
        list.modified = text;
    }
    return list;
}

std::optional<ListPreview> previewList(const std::string& place, const ListKind& kind) {
    if (kind.table.empty()) return std::nullopt;
    try {
        const auto list = makeObject<portable::JetConnection>(portable::DrivePaths());
        list->ConnectionString(
            joined({"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"", replaced(place, "\"", "\"\""), "\""}));
        list->Open("", "", adOptionUnspecified);
        ListPreview preview;
        const auto count = list->openRows(joined({"SELECT count(*) FROM ", kind.table}));
        if (count->next()) preview.rows = toLong(count->value(0), spanishLocale());
        const auto rows = list->openRows(joined({"SELECT * FROM ", kind.table}));
        preview.look = lookAt(*rows, kind);
        return preview;
    } catch (const RuntimeError&) {
        return std::nullopt;  // the run itself says what is wrong with it
    }
}

}  // namespace pxtarvo::devhost
