#include "devhost/report/list_look.h"

#include <algorithm>

#include "devhost/report/lenient_values.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr int rowsLookedAt = 200;

bool hasLetter(std::string_view text) {
    return std::ranges::any_of(text, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
    });
}

}  // namespace

ListLook lookAt(portable::RowStream& rows, const ListKind& kind) {
    const ColumnasLista& columns = kind.columns;
    ListLook look;
    look.columns = rows.columnCount();
    if (look.columns <= std::max({columns.nCodigo, columns.nPrecio, columns.nGrupo, columns.nDescripcion})) {
        look.faults.push_back(LookFault::TooFewColumns);
        return look;
    }
    int read = 0;
    int codes = 0;
    int prices = 0;
    int descriptions = 0;
    for (; read < rowsLookedAt && rows.next(); ++read) {
        const std::string text = textOf(rows.value(columns.nCodigo));
        const std::string_view code = trimBlanks(text);
        // A code has no blanks within, and more than one character.
        codes += code.size() > 1 && code.find(' ') == code.npos;
        prices += numberOf(rows.value(columns.nPrecio)).has_value();
        descriptions += hasLetter(textOf(rows.value(columns.nDescripcion)));
    }
    const auto require = [&](int fitting, LookFault fault) {
        if (2 * fitting < read) look.faults.push_back(fault);  // most rows must fit
    };
    require(codes, LookFault::NoCodes);
    require(prices, LookFault::NoPrices);
    require(descriptions, LookFault::NoDescriptions);
    return look;
}

}  // namespace pxtarvo::devhost
