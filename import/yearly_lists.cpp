// The years of the lists: their layouts, and which import takes which. A new year is a layout and a line of
// the table.

#include "import/yearly_lists.h"

#include "import/frm_imp_tarifas.h"
#include "import/list_2006.h"
#include "import/row_import.h"

namespace pxtarvo {

namespace {

constexpr FormatoTarifa formato2007{
    .sTabla = sTablaTarifa,
    .marca = Art::Mar,
    .bFechaDeLista = true,
};

constexpr FormatoTarifa formato2008{
    .sTabla = sTablaTarifa,
    .bContarFilas = true,
    .marca = Art::Mar,
    .bConservarPrecioMayor = true,
    .bReactivar = true,
    .bFechaDeLista = true,
};

constexpr FormatoTarifa formato2009{
    .sTabla = sTablaTarifa,
    .bContarFilas = true,
    .marca = Art::Marca,
    .bMarcaSeleccionada = true,
    .bConservarPrecioMayor = true,
    .bReactivar = true,
    .bEscribirCal = true,
};

}  // namespace

std::span<const frmImpTarifas::AnioTarifa> frmImpTarifas::aniosTarifa() {
    constexpr auto importar2010 = [](frmImpTarifas& ventana) {
        std::string sTabla(sTablaTarifa);
        ventana.msImportarTarifa2010(sTabla);
    };
    static constexpr AnioTarifa anios[] = {
        {sAnio2006, [](frmImpTarifas& ventana) { ventana.msImportarTarifaMdb(); }},
        {"2007", [](frmImpTarifas& ventana) { ventana.msImportarTarifa2007(); }},
        {"2008", [](frmImpTarifas& ventana) { ventana.msImportarTarifa2008(); }},
        {"2009", [](frmImpTarifas& ventana) { ventana.msImportarTarifa2009(); }},
        {"2010", importar2010},
        {"2011", importar2010},
        {"2012", importar2010},
    };
    return anios;
}

std::vector<std::string> frmImpTarifas::anios() {
    std::vector<std::string> anios;
    for (const AnioTarifa& anio : aniosTarifa()) anios.emplace_back(anio.sAnio);
    return anios;
}

void frmImpTarifas::msImportarTarifa2007() {
    msImportarTarifa(formato2007);
}

void frmImpTarifas::msImportarTarifa2008() {
    msImportarTarifa(formato2008);
}

void frmImpTarifas::msImportarTarifa2009() {
    msImportarTarifa(formato2009);
}

void frmImpTarifas::msImportarTarifa2010(std::string& sTabla) {
    FormatoTarifa formato = formato2009;
    formato.sTabla = sTabla;
    formato.bAvisoTabla = true;
    msImportarTarifa(formato);
}

}  // namespace pxtarvo
