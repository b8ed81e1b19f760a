#include "deletion/campos_borrado.h"

#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

constexpr std::string_view sParametroOrden = "PAR_ORCONTANOM";

}  // namespace

CamposBorrado::CamposBorrado(Window& ventana, const ControlArray<TextBox>& Text1)
    : CamposCodigo(ventana, Text1, reglasBorrado) {}

HostFieldHelper& CamposBorrado::ayuda() {
    if (!oAyuda) oAyuda = goInstancia().crearAyuda();
    return *oAyuda;
}

void CamposBorrado::crearAyuda() {
    ayuda().Conexion(MyBd()->Conexion());
    darColores();
}

void CamposBorrado::Text1_LostFocus(int Index) {
    TextBox& campo = Text1_[Index];
    switch (reglas_.campo(Index).alSalir) {
        case AlSalir::BuscarProveedor:
            // Opens the search instead of checking the code.
            if (trimBlanks(campo.text()).empty()) {
                IdProveedor = 0;
            } else {
                buscarProveedor();
            }
            break;
        case AlSalir::BuscarMarca:
            CamposCodigo::Text1_LostFocus(Index);
            if (campo.text().empty()) escribir(Index + 1, "");
            break;
        case AlSalir::Fecha:
            ayuda().SalirCampo(campo, sFormatoFecha);
            break;
        default:
            ayuda().SalirCampo(campo, "");
            ventana_.platform().desktop().doEvents();
    }
}

void CamposBorrado::buscarProveedor() {
    std::int32_t IdPro = 0;
    msBuscarProveedor(nBusquedaInteractiva, IdPro);
}

void CamposBorrado::msBuscarProveedor(std::int32_t nProveedor, std::int32_t& IdPro) {
    const Locale& locale = ventana_.platform().locale();
    // Which of a name and its surnames come first is read, but no query below names a client.
    compare(MyBd()->Parametros()->Item(sParametroOrden)->Valor(), std::int16_t{0}, locale);

    constexpr ListaProveedores listaFiscal{
        "Select PRO_ID,PRO_COD,(PRO_NOM + ' ' + ISNULL(PRO_APE1,'') + ' ' + ISNULL(PRO_APE2,'')) AS RSOC FROM PRO",
        "RSOC", "Buscar proveedor por nombre Fiscal"};
    constexpr ListaProveedores listaComercial{"Select PRO_ID,PRO_COD,PRO_COMER FROM PRO", "PRO_COMER",
                                              "Buscar proveedor por nombre Comercial"};
    if (nProveedor == nBusquedaInteractiva && IdPro == 0) {
        const std::string sElegido = elegirProveedor(listaFiscal, listaComercial, "Proveedor");
        IdPro = eligio(sElegido) ? toLong(split(sElegido, separadorBuscar).front(), locale) : 0;
    }
    if (IdPro == 0 && nProveedor < 0) return;

    const std::string sFiltro = IdPro != 0 ? joined({" PRO_id = ", plainNumber(IdPro)})
                                           : joined({" PRO_COD = ", plainNumber(nProveedor)});
    const ObjectRef<Recordset> rs =
        consultar(joined({"SELECT PRO_ID,PRO_COD,PRO_NOM,PRO_comer FROM PRO WHERE ", sFiltro}));
    if (rs->RecordCount() < 1) {
        IdProveedor = 0;
        escribirCodigo(reglas_.nProveedor, "", "");
        return;
    }
    IdProveedor = toLong(rs->Fields(0), locale);
    escribirCodigo(reglas_.nProveedor, joinedText(rs->Fields(1), locale), joinedText(rs->Fields(2), locale));
}

}  // namespace pxtarvo
