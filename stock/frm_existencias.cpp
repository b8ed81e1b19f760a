#include "stock/frm_existencias.h"

#include "fields/window_texts.h"
#include "platform/values/conversion.h"
#include "platform/values/date_text.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"
#include "stock/lineas_existencias.h"

namespace pxtarvo {

namespace {

constexpr WindowPlan planVentana{
    .name = "frmExistencias", .caption = "Generación fichero stock", .width = 600, .height = 330};

constexpr std::string_view sClienteInicial = "A24700500";
constexpr std::string_view sOrganizacionInicial = "161";
constexpr std::string_view sDireccionInicial = "A24700500";
constexpr std::string_view sRutaFichero = "C:\\TARVO\\STOCK\\StockTarvo";
constexpr std::string_view sExtensionFichero = ".txt";

constexpr int nPrimerFichero = 2;  // 1 is the location update's, open after a failed one

enum Campo {
    campoFichero = 0,
    campoProveedor = 1,
    campoMarca = 3,
    campoCliente = 5,
    campoOrganizacion = 6,
    campoDireccion = 7
};

/// Columns of the articles, by position.
enum Posicion { posId = 0, posCodigo = 1, posDescripcion = 2 };

/// A field that must not be blank.
struct Obligatorio {
    int nCampo;
    std::string_view sAviso;
};

constexpr Obligatorio obligatorios[] = {
    {campoCliente, "No ha informado del codigo de cliente"},
    {campoOrganizacion, "No ha informado del campo organización"},
    {campoDireccion, "No ha informado de la direción de envío"},
};

/// YYYYMMDD
std::string fechaDeFichero(const CalendarTime& fecha) {
    const std::string sFecha = dayMonthYear(fecha);
    return joined({sFecha.substr(6, 4), sFecha.substr(3, 2), sFecha.substr(0, 2)});
}

}  // namespace

frmExistencias::frmExistencias(Platform& platform)
    : Window(platform, planVentana),
      Label1(*this, {.name = "Label1"},
             {{.index = 0, .rect = {16, 20, 150, 16}, .caption = "Codigo Cliente"},
              {.index = 1, .rect = {16, 52, 150, 16}, .caption = "Organización"},
              {.index = 2, .rect = {16, 84, 150, 16}, .caption = "Codigo Direccion de envio"},
              {.index = 3, .rect = {16, 116, 150, 16}, .caption = sRotuloFichero},
              {.index = 4, .rect = {16, 148, 150, 16}, .caption = sRotuloProveedor},
              {.index = 5, .rect = {16, 180, 150, 16}, .caption = sRotuloMarca}}),
      Text1(*this, {.name = "Text1"},
            {{.index = campoCliente, .rect = {172, 16, 110, 22}, .tabIndex = 0, .maxLength = 10},
             {.index = campoOrganizacion, .rect = {172, 48, 50, 22}, .tabIndex = 1, .maxLength = 3},
             {.index = campoDireccion, .rect = {172, 80, 190, 22}, .tabIndex = 2, .maxLength = 20},
             {.index = campoFichero, .rect = {172, 112, 378, 22}, .tabIndex = 3},
             {.index = campoProveedor, .rect = {172, 144, 90, 22}, .tabIndex = 5, .maxLength = 10},
             {.index = campoProveedor + 1, .rect = {268, 144, 316, 22}, .tabIndex = 6},
             {.index = campoMarca, .rect = {172, 176, 90, 22}, .tabIndex = 7, .maxLength = 6},
             {.index = campoMarca + 1, .rect = {268, 176, 316, 22}, .tabIndex = 8}}),
      cmdFichero(*this, {.name = "cmdFichero", .rect = {556, 111, 28, 24}, .tabIndex = 4, .caption = "..."}),
      XPButton1(
          *this,
          {.name = "XPButton1", .rect = {172, 216, 140, 30}, .tabIndex = 9, .caption = "Iniciar proceso"}),
      ProgressBar1(*this, {.name = "ProgressBar1", .rect = {16, 262, 568, 18}, .visible = false}),
      Label2(*this, {.name = "Label2", .rect = {16, 292, 568, 16}, .caption = "Label2"}),
      campos_(*this, Text1, reglasExistencias) {
    campos_.atenderCampos();
    cmdFichero.onClick = [this] { cmdFichero_Click(); };
    XPButton1.onClick = [this] { XPButton1_Click(); };
}

void frmExistencias::Form_Load() {
    campos_.crearAyuda();
    Text1[campoCliente].setText(sClienteInicial);
    Text1[campoOrganizacion].setText(sOrganizacionInicial);
    Text1[campoDireccion].setText(sDireccionInicial);
    Text1[campoFichero].setText(
        joined({sRutaFichero, fechaDeFichero(platform().clock().now()), sExtensionFichero}));
    Label2.setCaption("");
    Text1[campoProveedor].setTag(etiquetaProveedor);
    Text1[campoMarca].setTag(etiquetaMarca);
}

void frmExistencias::cmdFichero_Click() {
    Text1[campoFichero].setText(ExaminarFichero());
}

bool frmExistencias::camposCompletos() {
    for (const Obligatorio& campo : obligatorios) {
        if (!trimBlanks(Text1[campo.nCampo].text()).empty()) continue;
        campos_.avisarEnCampo(campo.sAviso, campo.nCampo);
        return false;
    }
    // The supplier is asked for, though only the brand decides what is written.
    return !campos_.avisarSinProveedor() && !campos_.avisarSinMarca();
}

void frmExistencias::XPButton1_Click() {
    if (!camposCompletos()) return;
    platform().desktop().pointer(PointerShape::ArrowHourglass);
    // No blank before AND: the database ends the number at the first character that cannot continue it.
    const ObjectRef<Recordset> rsArticulos = consultar(
        joined({"SELECT Art_Id,Art_Cod,Art_Des FROM Art WHERE Art_Marca = ", plainNumber(campos_.IdMarca),
                "AND Art_Estado = 0  ORDER BY Art_Des"}));
    ProgressBar1.setMinimum(0);
    ProgressBar1.setMaximum(rsArticulos->RecordCount());
    ProgressBar1.setVisible(true);
    rsArticulos->MoveFirst();

    TextFiles& ficheros = platform().textFiles();
    const int nFichero = ficheros.freeFile(nPrimerFichero);
    ficheros.openForOutput(nFichero, trimBlanks(Text1[campoFichero].text()));
    const LineasExistencias lineas(trimBlanks(Text1[campoCliente].text()), Text1[campoOrganizacion].text(),
                                   Text1[campoDireccion].text());
    ficheros.print(nFichero, lineas.inicio());
    for (std::int32_t nRegistro = 1; !rsArticulos->Eof(); ++nRegistro) {
        platform().desktop().doEvents();
        Label2.setCaption(joined({"Procesado registro ", plainNumber(nRegistro), " ",
                                  texto(rsArticulos->Fields(posDescripcion))}));
        ProgressBar1.setValue(nRegistro);
        escribirArticulo(nFichero, lineas, *rsArticulos);
        rsArticulos->MoveNext();
    }
    platform().desktop().pointer(PointerShape::Default);
    ficheros.print(nFichero, lineas.fin());
    ficheros.close(nFichero);

    setTag(etiquetaAviso);
    avisar(sExito);
    Unload();
}

/// Only the first stock row counts; nothing is written where it holds none.
void frmExistencias::escribirArticulo(int nFichero, const LineasExistencias& lineas,
                                      const Recordset& rsArticulos) {
    const Locale& locale = platform().locale();
    const ObjectRef<Recordset> rsExistencias = consultar(
        joined({"SELECT Exis_Cantidad FROM Exis WHERE Exis_IdArt = ", texto(rsArticulos.Fields(posId))}));
    if (rsExistencias->RecordCount() < 1) return;
    const Variant vCantidad = rsExistencias->Fields(0);
    const auto orden = compare(vCantidad, std::int16_t{0}, locale);
    if (!orden || *orden <= 0) return;
    platform().textFiles().print(
        nFichero, lineas.articulo(texto(rsArticulos.Fields(posCodigo)), platform().clock().now(),
                                  toDouble(vCantidad, locale)));
}

std::string frmExistencias::texto(const Variant& valor) const {
    return joinedText(valor, platform().locale());
}

}  // namespace pxtarvo
