#include "devhost/library/refused_writes.h"

#include <algorithm>

#include "host/tables.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// What names an inserted row, each of another table.
constexpr std::string_view namingColumns[] = {Art::Cod.sNombre,     Aat::Id.sNombre,      ArtPro::Cop.sNombre,
                                              Exis::CodArt.sNombre, Hexis::idArt.sNombre, Ubi::IdArt.sNombre};

std::string rowOf(const HostWrite& write) {
    if (write.kind != WriteKind::Insert) return std::string(write.condition);
    for (const WrittenColumn& column : write.columns) {
        if (std::ranges::find(namingColumns, column.name) == std::end(namingColumns)) continue;
        return joined({", ", column.name, " = ", joinedText(column.value, spanishLocale())});
    }
    return {};
}

}  // namespace

void RefusedWrites::add(const HostWrite& write, std::string_view reason) {
    if (count_++ > 0) return;
    first_ = joined(
        {writeNames[static_cast<std::size_t>(write.kind)], " ", write.table, rowOf(write), ": ", reason});
}

}  // namespace pxtarvo::devhost
