#include "stock/lineas_existencias.h"

#include <cmath>

#include "platform/values/date_text.h"
#include "platform/values/number_text.h"
#include "platform/values/rounding.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

/// Widths of the columns, in characters.
enum Ancho {
    anchoCliente = 10,
    anchoCodigo = 15,
    anchoFecha = 8,
    anchoCantidad = 7,
    anchoOrganizacion = 3,
    anchoDireccion = 9
};

std::string cantidad(double nCantidad) {
    std::string sCifras = plainNumber(roundHalfAway(std::fabs(nCantidad), 0));
    if (sCifras.size() < anchoCantidad) sCifras.insert(0, anchoCantidad - sCifras.size(), '0');
    return sCifras;
}

}  // namespace

LineasExistencias::LineasExistencias(std::string_view sCliente, std::string_view sOrganizacion,
                                     std::string_view sDireccion)
    : sCliente_(paddedRight(sCliente, anchoCliente)),
      sOrganizacion_(paddedRight(sOrganizacion, anchoOrganizacion)),
      sDireccion_(paddedRight(sDireccion, anchoDireccion)) {}

std::string LineasExistencias::linea(std::string_view sCodigo, std::string_view sFecha,
                                     std::string_view sCantidad) const {
    return joined({sCliente_, paddedRight(sCodigo, anchoCodigo), paddedRight(sFecha, anchoFecha),
                   paddedRight(sCantidad, anchoCantidad), sOrganizacion_, sDireccion_});
}

std::string LineasExistencias::articulo(std::string_view sCodigo, const CalendarTime& fecha,
                                        double nCantidad) const {
    return linea(firstCharacters(trimBlanks(sCodigo), anchoCodigo), replaced(dayMonthYear(fecha), "/", ""),
                 cantidad(nCantidad));
}

}  // namespace pxtarvo
