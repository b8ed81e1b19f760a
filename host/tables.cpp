#include "host/tables.h"

#include <algorithm>

#include "platform/values/runtime_error.h"

namespace pxtarvo {

const Columna& Tabla::columna(std::string_view sNombre) const {
    const auto found = std::ranges::find(columnas, sNombre, &Columna::sNombre);
    if (found == columnas.end()) throw RuntimeError(ErrorNumber::ItemNotFound);
    return *found;
}

}  // namespace pxtarvo
