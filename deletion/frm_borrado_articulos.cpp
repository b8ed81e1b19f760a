#include "deletion/frm_borrado_articulos.h"

#include "fields/window_texts.h"
#include "host/row_write.h"
#include "platform/error_trap.h"
#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

constexpr WindowPlan planVentana{
    .name = "frmBorradoArticulos", .caption = "Borrado  de Articulos", .width = 860, .height = 560};

constexpr std::string_view sTitulo = "Borrado masivo de artículos";

constexpr std::string_view sMarcoCriterios = "Frame1";
constexpr std::string_view sMarcoEstado = "Frame7";
constexpr std::string_view sAtencion =
    "ATENCION: Este proceso borra artículos que no tienen presupuestos, pedidos, albaranes, composiciones, "
    "órdenes ni movimientos de almacén";

enum Campo { campoFecha = 1, campoMarca = 3 };

/// The grid's place; the empty list shares it.
constexpr Rect lugarDatos{8, 190, 844, 312};

constexpr std::string_view sSeleccion =
    "SELECT Art_Id,Art_Cod,Art_Des, "
    "(SELECT Marca_DES FROM Marcas WHERE Marca_Id = Art_Marca) AS Marca, "
    "(SELECT FAM_DES FROM Fam WHERE Fam_Id = Art_FAm) AS Familia, "
    "ISNULL((SELECT 'Si' FROM Exis WHERE Exis_IdArt = Art_Id OR Exis_Codart = Art_Cod),'No') AS Almacen,"
    "CASE WHEN Art_Estado = 0 then 'Activo' else 'Baja' END As Estado,Art_FechaEstado "
    "FROM Art ";

/// An article that any of these tables refers to is left alone. The orders refer by code.
constexpr std::string_view sSinMovimientos =
    "WHERE Art_Id NOT IN (SELECT Lapr_IdArt FROM Lapr GROUP BY Lapr_IdArt) "
    " AND art_id NOT IN (SELECT PedLi_IdArt FROM Pedli GROUP BY PedLi_IdArt) "
    " AND art_id not in (select lav_idart from lav group by lav_idart) "
    " AND Art_Id NOT IN (SELECT Lpc_IdArt FROM Lpc GROUP BY Lpc_IdArt) "
    " AND art_cod not in (select lac_codart from lac group by lac_codart) "
    " AND Art_Id NOT IN (SELECT Hexis_idArt FROM Hexis GROUP BY Hexis_idArt) ";

constexpr std::string_view sOrden = " ORDER BY Art_FechaEstado";

/// The grid's columns, in the order of the statement's.
std::vector<GridColumn> columnasDatos() {
    return {{.visible = false},
            {.caption = "Codigo", .width = 1900},
            {.caption = "Descripción", .width = 5900},
            {.caption = "Marca", .width = 1000},
            {.caption = "Familia", .width = 1000, .visible = false},
            {.caption = "Alm", .width = 400, .centred = true},
            {.caption = "Estado", .width = 600, .centred = true},
            {.caption = "Fecha", .width = 1100, .centred = true, .format = "DD/MM/YYYY"}};
}

}  // namespace

frmBorradoArticulos::frmBorradoArticulos(Platform& platform)
    : Window(platform, planVentana),
      Frame1(*this, {.name = sMarcoCriterios, .rect = {8, 8, 844, 132}, .caption = "Criterios de acotación"}),
      Label1(*this, {.name = "Label1", .container = sMarcoCriterios},
             {{.index = 0, .rect = {22, 34, 146, 16}, .caption = sRotuloMarca},
              {.index = 1, .rect = {22, 68, 146, 16}, .caption = "Hasta Fecha"},
              {.index = 2, .rect = {22, 102, 816, 32}, .caption = sAtencion}}),
      Text1(*this, {.name = "Text1", .container = sMarcoCriterios},
            {{.index = campoMarca, .rect = {172, 30, 80, 22}, .tabIndex = 0, .maxLength = 6},
             {.index = campoMarca + 1, .rect = {258, 30, 300, 22}, .tabIndex = 1},
             {.index = campoFecha, .rect = {172, 64, 80, 22}, .tabIndex = 2, .maxLength = 10}}),
      Check1(*this, {.name = "Check1",
                     .rect = {284, 65, 150, 20},
                     .tabIndex = 3,
                     .caption = "Selección manual",
                     .container = sMarcoCriterios}),
      Frame7(*this, {.name = sMarcoEstado,
                     .rect = {580, 24, 258, 66},
                     .caption = "Estado",
                     .container = sMarcoCriterios}),
      Option3(*this, {.name = "Option3",
                      .rect = {594, 50, 74, 20},
                      .tabIndex = 4,
                      .caption = "Todos",
                      .container = sMarcoEstado}),
      Option1(*this, {.name = "Option1",
                      .rect = {676, 50, 74, 20},
                      .tabIndex = 5,
                      .caption = "Activo",
                      .container = sMarcoEstado}),
      Option2(*this, {.name = "Option2",
                      .rect = {758, 50, 74, 20},
                      .tabIndex = 6,
                      .caption = "Baja",
                      .container = sMarcoEstado}),
      cmdInicio(
          *this,
          {.name = "cmdInicio", .rect = {8, 150, 160, 30}, .tabIndex = 7, .caption = "&Iniciar búsqueda"}),
      cmdBorrar(*this, {.name = "cmdBorrar",
                        .rect = {176, 150, 160, 30},
                        .tabIndex = 8,
                        .caption = "Borrar articulos",
                        .enabled = false}),
      cmdSalir(*this, {.name = "cmdSalir", .rect = {732, 150, 120, 30}, .tabIndex = 9, .caption = "&Salir"}),
      // Out of sight: an empty list would only hide the grid.
      ListView1(*this, {.name = "ListView1", .rect = lugarDatos, .visible = false}),
      dbgDatos(*this, {.name = "dbgDatos", .rect = lugarDatos, .tabIndex = 10}),
      ProgressBar1(*this, {.name = "ProgressBar1", .rect = {8, 510, 844, 18}, .visible = false}),
      Label2(*this, {.name = "Label2", .rect = {8, 536, 844, 16}, .caption = "Label2", .visible = false}),
      campos_(*this, Text1) {
    ListView1.setColumns({{"Codigo", 1900}, {"Descripción", 5900}, {"Marca", 1000}, {"Familia", 1000}});
    Option3.setValue(true);
    campos_.atenderCampos();
    cmdInicio.onClick = [this] { cmdInicio_Click(); };
    cmdBorrar.onClick = [this] { cmdBorrar_Click(); };
    cmdSalir.onClick = [this] { Unload(); };
}

void frmBorradoArticulos::Form_Load() {
    campos_.crearAyuda();
    setCaption(tituloConVersion());
    Text1[campoMarca].setTag(etiquetaMarca);
}

std::string frmBorradoArticulos::tituloConVersion() {
    return joined({sTitulo, " (Versión ", PXTARVO_VERSION, ")"});
}

std::string frmBorradoArticulos::criterios() const {
    std::string sCriterios(sSinMovimientos);
    const std::string& sFecha = Text1[campoFecha].text();
    if (isDate(sFecha, platform().locale())) {
        sCriterios.append(" AND  Art_FechaEstado<='").append(sFecha).append(" 23:59:59'");
    }
    if (Option1.value()) sCriterios.append(" AND Art_Estado=0");
    if (Option2.value()) sCriterios.append(" AND Art_Estado=1");
    if (campos_.IdMarca > 0) sCriterios.append(" AND Art_Marca = ").append(plainNumber(campos_.IdMarca));
    return sCriterios;
}

void frmBorradoArticulos::cmdInicio_Click() {
    Desktop& escritorio = platform().desktop();
    const std::string sCriterios = criterios();
    cmdInicio.setEnabled(false);
    Label2.setCaption("Buscando artículos");
    Label2.setVisible(true);
    ProgressBar1.setVisible(true);
    escritorio.pointer(PointerShape::ArrowHourglass);
    escritorio.doEvents();
    setEnabled(false);
    rsBusqueda = consultar(joined({sSeleccion, sCriterios, sOrden}));
    escritorio.pointer(PointerShape::Default);
    setEnabled(true);

    if (rsBusqueda->RecordCount() >= 1) {
        mostrarResultado();
        return;
    }
    setTag(etiquetaAviso);
    mensaje("No hay articulos introducidos", MessageIcon::Information);
    Unload();
}

void frmBorradoArticulos::mostrarResultado() {
    const std::int32_t nArticulos = rsBusqueda->RecordCount();
    Label2.setCaption(
        joined({"Número de Artículos encontrados ", groupedNumber(nArticulos, platform().locale()),
                " - Buscando sin movimientos"}));
    ProgressBar1.setMinimum(0);
    ProgressBar1.setMaximum(nArticulos);
    cmdBorrar.setEnabled(true);
    dbgDatos.setDataSource(rsBusqueda);
    dbgDatos.setColumns(columnasDatos());
}

void frmBorradoArticulos::cmdBorrar_Click() {
    const MessageAnswer respuesta = mensaje("Confirma que desea borrar los articulos encontrados",
                                            MessageIcon::Warning, MessageButtons::YesNo);
    if (respuesta != MessageAnswer::Yes) return;
    Label2.setCaption("Borrando artículos");
    ProgressBar1.setMaximum(rsBusqueda->RecordCount());
    rsBusqueda->MoveFirst();
    bool bComenzada = false;
    const auto error = trapped([&] {
        MyBd()->Conexion()->BeginTrans();
        bComenzada = true;
        for (std::int32_t nRegistro = 1; !rsBusqueda->Eof(); ++nRegistro) {
            platform().desktop().doEvents();
            ProgressBar1.setValue(nRegistro);
            borrarArticulo();
            rsBusqueda->MoveNext();
        }
        MyBd()->Conexion()->CommitTrans();
    });
    if (!error) {
        mensaje(sBorradoFinalizado, MessageIcon::Information);
    } else {
        deshacer(bComenzada);
        if (!error->is(ErrorNumber::HostRefused)) mensaje(error->description(), MessageIcon::Critical);
    }
    Unload();
}

/// The article of the result's current row, then its stock: by identifier, and by code as it stands.
void frmBorradoArticulos::borrarArticulo() {
    const Locale& locale = platform().locale();
    const ObjectRef<HostDatabase> bd = MyBd();
    std::string sMensaje;
    const auto borrar = [&](const Tabla& tabla, const std::string& sCondicion) {
        if (!EscrituraFila(bd, tabla).borrar(sCondicion, sMensaje)) {
            throw RuntimeError(ErrorNumber::HostRefused, "");
        }
    };
    const Variant vIdArt = rsBusqueda->Fields("Art_Id");
    borrar(Art::tabla, condicion(Art::Id, vIdArt, locale));
    borrar(Exis::tabla, joined({condicion(Exis::IdArt, vIdArt, locale), " OR Exis_Codart = '",
                                joinedText(rsBusqueda->Fields("Art_Cod"), locale), "'"}));
}

MessageAnswer frmBorradoArticulos::mensaje(std::string_view sTexto, MessageIcon icono,
                                           MessageButtons botones) {
    return platform().desktop().messageBox(insisted([&] {
        return Message{.text = std::string(sTexto),
                       .title = std::string(sTitulo),
                       .buttons = botones,
                       .icon = icono,
                       .defaultsToNo = botones == MessageButtons::YesNo};
    }));
}

}  // namespace pxtarvo
