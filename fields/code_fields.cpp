#include "fields/code_fields.h"

#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

constexpr double nColorFondo = 16777215;  // white
constexpr double nColorFoco = 65535;      // yellow
constexpr std::size_t nSinEleccion = 2;   // an answer of the search list up to this length chose nothing
constexpr std::int32_t nAnchoCodigo = 600;
constexpr std::int32_t nAnchoNombre = 6000;
constexpr std::string_view sFormatoImporte = "#,###,##0.00";

constexpr std::string_view sProveedores =
    "Select Pro_ID,Pro_COD,"
    "(isnull((CASE WHEN Pro_TIPDOC =0 THEN Pro_NOM ELSE Pro_Nom + ' ' + Pro_APE1 + ' ' + Pro_APE2 END),Pro_comer)) "
    "as Pro_Nom FROM Pro";
constexpr std::string_view sMarcas = "Select Marca_ID,Marca_Des,Marca_CodAbrev FROM Marcas";

constexpr std::string_view sPreguntaNombreFiscal =
    "Desea Buscar por el nombre Fiscal ?.\r\nSi contesta NO, la busqueda será por Nombre Comercial";

bool vacio(std::string_view sTexto) {
    return trimBlanks(sTexto).empty();
}

/// Identifier and the two shown columns of a chosen row.
std::vector<std::string_view> partesDe(std::string_view sElegido) {
    std::vector<std::string_view> partes = split(sElegido, separadorBuscar);
    if (partes.size() < 3) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
    return partes;
}

}  // namespace

void CamposCodigo::crearAyuda() {
    oAyuda = goInstancia().crearAyuda();
    darColores();
    oAyuda->Conexion(MyBd()->Conexion());
}

void CamposCodigo::darColores() {
    oAyuda->ColorFoco(nColorFoco);
    oAyuda->ColorFondo(nColorFondo);
}

bool CamposCodigo::eligio(std::string_view sElegido) {
    return characterCount(sElegido) > nSinEleccion;
}

void CamposCodigo::atenderCampos() {
    ventana_.onKeyUp = [this](std::int16_t KeyCode, std::int16_t Shift) { Form_KeyUp(KeyCode, Shift); };
    for (const auto& [indice, campo] : Text1_) {
        campo->onGotFocus = [this, Index = indice] { Text1_GotFocus(Index); };
        campo->onLostFocus = [this, Index = indice] { Text1_LostFocus(Index); };
        campo->onKeyPress = [this, Index = indice](std::int16_t& KeyAscii) {
            Text1_KeyPress(Index, KeyAscii);
        };
    }
}

void CamposCodigo::escribirCodigo(int Index, std::string_view sCodigo, std::string_view sNombre) {
    escribir(Index, sCodigo);
    escribir(Index + 1, sNombre);
}

void CamposCodigo::avisarEnCampo(std::string_view sTexto, int Index) {
    ventana_.setTag(etiquetaAviso);
    avisar(sTexto);
    Text1_[Index].setFocus();
}

bool CamposCodigo::avisarSinProveedor() {
    if (IdProveedor != 0) return false;
    avisarEnCampo("Debe indicar el codigo de proveedor", reglas_.nProveedor);
    return true;
}

bool CamposCodigo::avisarSinMarca() {
    if (IdMarca != 0) return false;
    avisarEnCampo("Debe indicar el codigo de la marca", reglas_.nMarca);
    return true;
}

bool CamposCodigo::preguntarNombreFiscal() {
    const Message pregunta{.text = std::string(sPreguntaNombreFiscal),
                           .buttons = MessageButtons::YesNo,
                           .icon = MessageIcon::Information};
    return ventana_.platform().desktop().messageBox(pregunta) == MessageAnswer::Yes;
}

std::string CamposCodigo::elegirProveedor(const ListaProveedores& fiscal, const ListaProveedores& comercial,
                                          std::string_view sTituloNombre) {
    const ListaProveedores& lista = preguntarNombreFiscal() ? fiscal : comercial;
    return ayuda().Buscar({.sSQL = std::string(lista.sSQL),
                           .sCampo = std::string(lista.sCampo),
                           .sTitulo1 = "Codigo",
                           .sTitulo2 = std::string(sTituloNombre),
                           .sTituloVentana = std::string(lista.sTituloVentana),
                           .nAncho1 = nAnchoCodigo,
                           .nAncho2 = nAnchoNombre});
}

void CamposCodigo::buscarProveedorPorNombre() {
    constexpr ListaProveedores comercial{"Select Pro_ID,Pro_COD,Pro_COMER FROM Pro ORDER BY Pro_COMER",
                                         "Pro_COMER", "Buscar Proveedores por nombre Comercial"};
    const std::string sElegido = elegirProveedor(
        {sProveedores, "Pro_Nom", "Buscar Proveedores por nombre Fiscal"}, comercial, "Nombre");
    if (!eligio(sElegido)) {
        escribirCodigo(reglas_.nProveedor, "", "");
        return;
    }
    const std::vector<std::string_view> partes = partesDe(sElegido);
    IdProveedor = toLong(partes[0], ventana_.platform().locale());
    escribirCodigo(reglas_.nProveedor, partes[1], partes[2]);
}

void CamposCodigo::msBuscarProveedor(std::int32_t nProveedor) {
    if (nProveedor < 0) {
        buscarProveedorPorNombre();
        return;
    }
    const std::string sSQL = std::string(sProveedores) + " where Pro_COD=" + plainNumber(nProveedor);
    const ObjectRef<Recordset> rs = consultar(sSQL);
    if (rs->RecordCount() < 1) {
        escribirCodigo(reglas_.nProveedor, "", "");
        return;
    }
    const Locale& locale = ventana_.platform().locale();
    IdProveedor = toLong(rs->Fields("Pro_Id"), locale);
    escribir(reglas_.nProveedor + 1, joinedText(rs->Fields("Pro_nom"), locale));
    rs->Close();
}

void CamposCodigo::msBuscarMarca(std::string& sMarca) {
    IdMarca = 0;
    if (vacio(sMarca)) {
        const std::string sElegido = ayuda().Buscar({.sSQL = std::string(sMarcas),
                                                     .sCampo = "Marca_Des",
                                                     .sTitulo1 = "Nombre",
                                                     .sTitulo2 = "Codigo",
                                                     .sTituloVentana = "Buscar Marcas por nombre",
                                                     .nAncho1 = nAnchoNombre,
                                                     .nAncho2 = nAnchoCodigo});
        if (eligio(sElegido)) sMarca = partesDe(sElegido)[2];
    }
    if (vacio(sMarca)) return;

    const std::string sSQL = std::string(sMarcas) + " where Marca_CodAbrev = '" + sMarca + "'";
    const ObjectRef<Recordset> rs = consultar(sSQL);
    if (rs->RecordCount() < 1) {
        escribirCodigo(reglas_.nMarca, "", "");
        return;
    }
    const Locale& locale = ventana_.platform().locale();
    IdMarca = toLong(rs->Fields("Marca_Id"), locale);
    escribirCodigo(reglas_.nMarca, joinedText(rs->Fields("Marca_CodAbrev"), locale),
                   joinedText(rs->Fields("Marca_Des"), locale));
    rs->Close();
}

void CamposCodigo::Text1_GotFocus(int Index) {
    TextBox& campo = Text1_[Index];
    switch (reglas_.campo(Index).alEntrar) {
        case AlEntrar::Nada:
            break;
        case AlEntrar::SoltarProveedor:
            IdProveedor = 0;
            break;
        case AlEntrar::QuitarBarras:
            campo.setText(replaced(campo.text(), "/", ""));
            break;
    }
    ayuda().EntrarCampo(campo, "");
}

void CamposCodigo::Text1_LostFocus(int Index) {
    TextBox& campo = Text1_[Index];
    const AlSalir alSalir = reglas_.campo(Index).alSalir;
    ayuda().SalirCampo(campo, "");
    if (campo.text().empty()) {
        if (alSalir == AlSalir::BuscarProveedor) IdProveedor = 0;
        if (alSalir == AlSalir::BuscarMarca) IdMarca = 0;
        return;
    }
    switch (alSalir) {
        case AlSalir::Nada:
            break;
        case AlSalir::BuscarProveedor:
            msBuscarProveedor(toLong(campo.text(), ventana_.platform().locale()));
            if (IdProveedor == 0) avisarEnCampo("Codigo Proveedor no existe", Index);
            break;
        case AlSalir::BuscarMarca: {
            std::string sMarca = campo.text();
            msBuscarMarca(sMarca);
            if (IdMarca == 0) avisarEnCampo("Codigo Marca no existe", Index);
            break;
        }
        case AlSalir::Fecha:
            ayuda().SalirCampo(campo, sFormatoFecha);
            break;
        case AlSalir::Importe:
            ayuda().SalirCampo(campo, sFormatoImporte);
            break;
    }
}

void CamposCodigo::Text1_KeyPress(int Index, std::int16_t& KeyAscii) {
    const Filtro filtro = reglas_.campo(Index).filtro;
    if (filtro != Filtro::Ninguno) ayuda().FiltrarTecla(Text1_[Index], KeyAscii, filtro == Filtro::Fecha);
}

void CamposCodigo::Form_KeyUp(std::int16_t KeyCode, std::int16_t) {
    Desktop& desktop = ventana_.platform().desktop();
    const bool bPagina = KeyCode == vkPageUp || KeyCode == vkPageDown;
    if (bPagina && reglas_.bPaginasSinEfecto) return;
    switch (KeyCode) {
        case vkReturn: {
            const bool bCierraAviso = !ventana_.tag().empty();
            ventana_.setTag("");
            if (!bCierraAviso) desktop.sendKeys(reglas_.sTeclaTab, reglas_.bEsperarTab);
            break;
        }
        case vkEscape:
            ventana_.Unload();
            break;
        case vkF1: {
            const Control* activo = ventana_.activeControl();
            if (!activo) break;
            if (activo->tag() == etiquetaProveedor) {
                buscarProveedor();
            } else if (activo->tag() == etiquetaMarca) {
                std::string sMarca;
                msBuscarMarca(sMarca);
            }
            break;
        }
        default:
            ventana_.setTag("");
            desktop.doEvents();
    }
}

}  // namespace pxtarvo
