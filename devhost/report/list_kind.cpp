#include "devhost/report/list_kind.h"

#include "import/barcode_list.h"
#include "import/discount_codes.h"
#include "import/list_2006.h"
#include "import/yearly_lists.h"

namespace pxtarvo::devhost {

std::optional<ListKind> listKind(std::string_view year, std::string_view list) {
    if (list == "ama") {
        if (year != sAnioCodigosBarras) return std::nullopt;
        return ListKind{.columns = columnasCodigosBarras};
    }
    if (year == sAnio2006) {
        return ListKind{.table = sTabla2006,
                        .columns = columnas2006,
                        .knowsGroup = [](std::string_view group) { return porcentajeDescuento(group) != 0; }};
    }
    return ListKind{.table = sTablaTarifa,
                    .columns = columnasTarifa,
                    .knowsGroup = [](std::string_view group) { return textoDescuento(group).has_value(); },
                    .groupCarriesOver = true};
}

}  // namespace pxtarvo::devhost
