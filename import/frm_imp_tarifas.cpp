#include "import/frm_imp_tarifas.h"

#include <algorithm>

#include "deletion/frm_borrado_articulos.h"
#include "fields/window_texts.h"
#include "import/barcode_list.h"
#include "import/code_correction.h"
#include "import/list_2006.h"
#include "import/location_update.h"
#include "import/row_import.h"
#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "stock/frm_existencias.h"

namespace pxtarvo {

namespace {

constexpr WindowPlan planVentana{
    .name = "frmImpTarifas", .caption = " Importación de Tarifa de recambios ", .width = 676, .height = 424};

constexpr int nProveedorInicial = 24;
constexpr std::string_view sMarcaInicial = "SAME";

constexpr std::string_view sRutaTarifa = "C:\\TARVO\\TARIFA";
constexpr std::string_view sExtensionTarifa = ".MDB";
constexpr std::string_view sRutaCodigosBarras = "C:\\TARVO\\CÓDIGO DE BARRAS";
constexpr std::string_view sExtensionCodigosBarras = ".xls";

constexpr std::string_view sMarcoCorreccion = "Frame1";
constexpr std::string_view sDescripcionCorreccion =
    "Proceso que busca articulos cuyo primer caracterde la izquierda no es cero, del proveedor 24 y que no "
    "tengan punto. Existe un articulo igual a los encontrados con el cero por la izquierda, pasamos la "
    "ubicacion de los sin cero a los con cero y sumamos las existencias en los con cero";

enum Opcion { opcionTarifa = 0, opcionCodigosBarras = 1 };
enum Campo { campoFichero = 0, campoProveedor = 1, campoMarca = 3 };

}  // namespace

frmImpTarifas::frmImpTarifas(Platform& platform)
    : Window(platform, planVentana),
      Shape1(*this, {.name = "Shape1", .rect = {8, 8, 660, 146}}),
      Option1(*this, {.name = "Option1"},
              {{.index = opcionTarifa,
                .rect = {20, 18, 250, 20},
                .tabIndex = 0,
                .caption = "Proveedor Same Deutz - Fahr Iberica"},
               {.index = opcionCodigosBarras, .rect = {284, 18, 90, 20}, .tabIndex = 1, .caption = "AMA"}}),
      Label1(*this, {.name = "Label1"},
             {{.index = 0, .rect = {20, 54, 146, 16}, .caption = sRotuloFichero},
              {.index = 1, .rect = {20, 88, 146, 16}, .caption = sRotuloProveedor},
              {.index = 2, .rect = {20, 122, 146, 16}, .caption = sRotuloMarca},
              {.index = 3, .rect = {486, 20, 64, 16}, .caption = "Ejercicio"}}),
      Combo1(*this, {.name = "Combo1", .rect = {556, 16, 100, 160}, .tabIndex = 2}),
      Text1(*this, {.name = "Text1"},
            {{.index = campoFichero, .rect = {172, 50, 344, 22}, .tabIndex = 3},
             {.index = campoProveedor, .rect = {172, 84, 80, 22}, .tabIndex = 6},
             {.index = campoProveedor + 1, .rect = {258, 84, 398, 22}, .tabIndex = 7},
             {.index = campoMarca, .rect = {172, 118, 80, 22}, .tabIndex = 8},
             {.index = campoMarca + 1, .rect = {258, 118, 398, 22}, .tabIndex = 9}}),
      cmdFichero(*this, {.name = "cmdFichero", .rect = {520, 49, 28, 24}, .tabIndex = 4, .caption = "..."}),
      XPButton2(
          *this,
          {.name = "XPButton2", .rect = {554, 49, 102, 24}, .tabIndex = 5, .caption = "Buscar Fichero"}),
      XPButton1(
          *this,
          {.name = "XPButton1", .rect = {172, 166, 140, 30}, .tabIndex = 10, .caption = "Iniciar proceso"}),
      ProgressBar1(*this, {.name = "ProgressBar1", .rect = {8, 208, 660, 18}, .visible = false}),
      Label2(*this, {.name = "Label2", .rect = {8, 236, 660, 16}, .caption = "Label2"}),
      cmdStock(*this,
               {.name = "cmdStock", .rect = {8, 264, 160, 28}, .tabIndex = 11, .caption = "Fichero Stock"}),
      cmdBorrado(*this, {.name = "cmdBorrado",
                         .rect = {176, 264, 160, 28},
                         .tabIndex = 12,
                         .caption = "Borrado de Artículos"}),
      XPButton4(*this, {.name = "XPButton4",
                        .rect = {344, 264, 160, 28},
                        .tabIndex = 13,
                        .caption = "Actualizar Ubicaciones"}),
      Frame1(*this,
             {.name = sMarcoCorreccion, .rect = {8, 304, 660, 112}, .caption = "Leopoldo 25-julio-2006"}),
      Label3(*this, {.name = "Label3",
                     .rect = {20, 326, 480, 80},
                     .caption = sDescripcionCorreccion,
                     .container = sMarcoCorreccion}),
      XPButton3(*this, {.name = "XPButton3",
                        .rect = {516, 376, 140, 28},
                        .tabIndex = 14,
                        .caption = "iniciar proceso",
                        .container = sMarcoCorreccion}),
      campos_(*this, Text1, reglasImportacion) {
    for (const auto& [indice, opcion] : Option1)
        opcion->onClick = [this, Index = indice] { Option1_Click(Index); };
    campos_.atenderCampos();
    cmdFichero.onClick = [this] { cmdFichero_Click(); };
    XPButton1.onClick = [this] { XPButton1_Click(); };
    cmdStock.onClick = [this] { cmdStock_Click(); };
    cmdBorrado.onClick = [this] { cmdBorrado_Click(); };
    XPButton3.onClick = [this] { XPButton3_Click(); };
    XPButton4.onClick = [this] { XPButton4_Click(); };
}

void frmImpTarifas::Form_Load() {
    campos_.crearAyuda();
    for (const AnioTarifa& anio : aniosTarifa()) Combo1.addItem(anio.sAnio);
    Combo1.setListIndex(static_cast<int>(aniosTarifa().size()) - 1);
    Option1[opcionTarifa].setValue(true);
    Option1_Click(opcionTarifa);
    Text1[campoProveedor].setText(plainNumber(nProveedorInicial));
    Text1[campoMarca].setText(sMarcaInicial);
    Label2.setCaption("");
    Text1[campoProveedor].setTag(etiquetaProveedor);
    Text1[campoMarca].setTag(etiquetaMarca);
    campos_.msBuscarProveedor(toLong(Text1[campoProveedor].text(), platform().locale()));
    std::string sMarca = Text1[campoMarca].text();
    campos_.msBuscarMarca(sMarca);
}

void frmImpTarifas::Option1_Click(int Index) {
    const bool bTarifa = Index == opcionTarifa;
    std::string sRuta(bTarifa ? sRutaTarifa : sRutaCodigosBarras);
    sRuta.append(Combo1.text()).append(bTarifa ? sExtensionTarifa : sExtensionCodigosBarras);
    Text1[campoFichero].setText(sRuta);
}

void frmImpTarifas::cmdFichero_Click() {
    Text1[campoFichero].setText(ExaminarFichero());
}

void frmImpTarifas::XPButton1_Click() {
    // Both checks only warn: the import runs all the same.
    campos_.avisarSinProveedor();
    campos_.avisarSinMarca();

    if (Option1[opcionTarifa].value()) {
        const auto anios = aniosTarifa();
        const auto anio = std::ranges::find(anios, Combo1.text(), &AnioTarifa::sAnio);
        (anio == anios.end() ? anios.back() : *anio).importar(*this);
    }
    if (Option1[opcionCodigosBarras].value() && Combo1.text() == sAnioCodigosBarras) msImportarCodigoBarras();
}

void frmImpTarifas::cmdStock_Click() {
    frmExistencias ventana(platform());
    platform().desktop().showModal(ventana);
}

void frmImpTarifas::cmdBorrado_Click() {
    frmBorradoArticulos ventana(platform());
    platform().desktop().showModal(ventana);
}

void frmImpTarifas::XPButton3_Click() {
    CorreccionCodigos(platform()).ejecutar();
}

void frmImpTarifas::XPButton4_Click() {
    ActualizacionUbicaciones(platform(), Label2).ejecutar();
}

bool frmImpTarifas::msConectarOrigen() {
    cnOrigen = platform().createConnection();
    cnOrigen->ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + Text1[campoFichero].text() +
                               ";Persist Security Info=False");
    cnOrigen->Open("", "", adOptionUnspecified);
    return cnOrigen->State() != adStateClosed;
}

void frmImpTarifas::msImportarTarifaMdb() {
    Importacion2006(vista()).ejecutar();
}

void frmImpTarifas::msImportarTarifa(const FormatoTarifa& formato) {
    ImportacionTarifa(vista(), formato).ejecutar();
}

void frmImpTarifas::msImportarCodigoBarras() {
    ImportacionCodigosBarras(vista()).ejecutar();
}

VistaImportacion frmImpTarifas::vista() {
    return {.platform = platform(),
            .campos = campos_,
            .Combo1 = Combo1,
            .Fichero = Text1[campoFichero],
            .Label2 = Label2,
            .ProgressBar1 = ProgressBar1,
            .cnOrigen = cnOrigen,
            .msConectarOrigen = [this] { return msConectarOrigen(); },
            .Unload = [this] { Unload(); }};
}

}  // namespace pxtarvo
