#include "import/code_correction.h"

#include <cmath>

#include "host/row_write.h"
#include "import/run_texts.h"
#include "module/mdo_pxtarvo.h"
#include "platform/error_trap.h"
#include "platform/values/conversion.h"
#include "platform/values/sum.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

// The supplier is the literal 4, whatever supplier the window shows.
constexpr std::string_view sOrigen =
    "select Art_Id,Art_Cod,Exis_Id,Exis_alma,Exis_Cantidad  from art "
    "INNER JOIN EXIS ON EXIS_IDART = ART_ID "
    "WHERE substring(art_cod,1,1)<>'0' "
    "AND art_cod = replace(art_cod,'.','A') "
    "AND art_id in(SELECT ArP_Ida FROM ArtPro WHERE ArP_Idp = 4) ";

constexpr std::string_view sComNueva =
    "Nuevo registro de existencias para articulo con codigo cero. origen articulo sin cero";
constexpr std::string_view sComAumentada = "Actualizacion desde codigo de articulo sin cero a con cero";
constexpr std::string_view sComVaciada = "Actualizacion de existencias a cero del articulo sin cero";

constexpr std::string_view sEntrada = "E";
constexpr std::string_view sSalida = "S";

constexpr std::int16_t nCero = 0;
constexpr std::int16_t nFactor = 1;

}  // namespace

/// One row of the stock history, but for what all of them have.
struct CorreccionCodigos::FilaHistoria {
    std::string_view sTipo;
    Variant vArticulo;
    double nCantidad = 0;
    std::string_view sCom;
    Variant vExistencia;  ///< the stock row moved
};

CorreccionCodigos::CorreccionCodigos(Platform& platform) : platform_(platform) {}

void CorreccionCodigos::ejecutar() {
    const Message pregunta{.text = "Confirma que desea comenzar el proceso",
                           .buttons = MessageButtons::YesNo,
                           .defaultsToNo = true};
    if (platform_.desktop().messageBox(pregunta) != MessageAnswer::Yes) return;

    const ObjectRef<Recordset> rsOrigen = consultar(sOrigen);
    MyBd()->Conexion()->BeginTrans();
    const auto error = trapped([&] {
        while (!rsOrigen->Eof() && !rsOrigen->Bof()) {
            pasarExistencias(*rsOrigen);
            rsOrigen->MoveNext();
        }
        MyBd()->Conexion()->CommitTrans();
    });
    if (error) deshacer();
    avisar(error ? error->description() : sCorreccionConcluida);
}

void CorreccionCodigos::pasarExistencias(const Recordset& rsOrigen) {
    const Locale& locale = platform_.locale();
    const ObjectRef<Recordset> rsCero = consultar(
        joined({"SELECT * FROM Art WHERE Art_Cod= '0", joinedText(rsOrigen.Fields("Art_Cod"), locale), "'"}));
    if (rsCero->RecordCount() < 1) return;
    const Variant vCantidad = rsOrigen.Fields("Exis_Cantidad");
    const Variant vArticuloCero = rsCero->Fields("Art_Id");
    const ObjectRef<Recordset> rsDestino =
        consultar("SELECT * FROM Exis WHERE Exis_IdArt = " + joinedText(vArticuloCero, locale));

    FilaHistoria entrada;
    entrada.vArticulo = vArticuloCero;
    if (rsDestino->RecordCount() < 1) {
        EscrituraFila escritura(MyBd(), Exis::tabla, AbrirCon::Limpiar);
        std::string sMensaje;
        escritura.agregar(Exis::alma, rsOrigen.Fields("Exis_alma"))
            .agregar(Exis::CodArt, rsCero->Fields("Art_Cod"))
            .agregar(Exis::Des, rsCero->Fields("Art_Des"))
            .agregar(Exis::For, nCero)
            .agregarFechaServidor(Exis::Fentrada)
            .agregar(Exis::Pro, nCero)
            .agregar(Exis::Cantidad, vCantidad)
            .agregar(
                {Exis::Largo, Exis::Ancho, Exis::Espesor, Exis::DMext, Exis::DMint, Exis::Lpc, Exis::Lac},
                nCero)
            .agregar(Exis::Kg, vCantidad)  // the quantity, not a weight
            .agregar(Exis::Kill, nCero)
            .agregar(Exis::IdArt, vArticuloCero)
            .agregar(Exis::Lote, "")
            .agregar(Exis::KgReal, nCero)
            .insertar(sMensaje);
        entrada.vExistencia = toLong(consultar("SELECT MAX(Exis_Id) FROM Exis")->Fields(0), locale);
        entrada.nCantidad = toDouble(vCantidad, locale);
        entrada.sCom = sComNueva;
    } else {
        const Variant vTotal = sum(rsDestino->Fields("Exis_Cantidad"), vCantidad, locale);
        const Variant vExistencia = rsDestino->Fields("Exis_Id");
        EscrituraFila(MyBd(), Exis::tabla, AbrirCon::Limpiar)
            .agregarFechaServidor(Exis::Fentrada)
            .agregar({Exis::Cantidad, Exis::Kg}, vTotal)
            .actualizar(condicion(Exis::Id, vExistencia, locale));
        entrada.vExistencia = toLong(vExistencia, locale);
        entrada.nCantidad = toDouble(vTotal, locale);  // the new total, not the quantity moved
        entrada.sCom = sComAumentada;
    }
    entrada.sTipo = entrada.nCantidad > 0 ? sEntrada : sSalida;
    escribirHistoria(rsOrigen, entrada);

    EscrituraFila(MyBd(), Exis::tabla, AbrirCon::Limpiar)
        .agregarFechaServidor(Exis::Fentrada)
        .agregar({Exis::Cantidad, Exis::Kg}, nCero)
        .actualizar(condicion(Exis::Id, rsOrigen.Fields("Exis_Id"), locale));

    const double nCantidad = toDouble(vCantidad, locale);
    escribirHistoria(rsOrigen, {.sTipo = nCantidad > 0 ? sSalida : sEntrada,
                                .vArticulo = rsOrigen.Fields("Art_Id"),
                                .nCantidad = std::abs(nCantidad),
                                .sCom = sComVaciada,
                                .vExistencia = rsOrigen.Fields("Exis_Id")});
}

void CorreccionCodigos::escribirHistoria(const Recordset& rsOrigen, const FilaHistoria& historia) {
    const std::int32_t nUsuario = MyBd()->Usuario();
    EscrituraFila escritura(MyBd(), Hexis::tabla, AbrirCon::Limpiar);
    std::string sMensaje;
    escritura.agregar(Hexis::Tipo, historia.sTipo)
        .agregar(Hexis::alma, rsOrigen.Fields("Exis_alma"))
        .agregar(Hexis::idArt, historia.vArticulo)
        .agregarFechaServidor(Hexis::Fecha)
        .agregar({Hexis::Cantidad, Hexis::Unidades}, historia.nCantidad)
        .agregar({Hexis::Importe, Hexis::Lac, Hexis::Lav}, nCero)
        .agregar(Hexis::Com, historia.sCom)
        .agregar(Hexis::For, nCero)
        .agregar(Hexis::Fac, nFactor)
        .agregar({Hexis::Largo, Hexis::Ancho, Hexis::Espesor, Hexis::DMext, Hexis::DMint, Hexis::Precio},
                 nCero)
        .agregar(Hexis::Usu, nUsuario)
        .agregar(Hexis::Exis, historia.vExistencia)
        .agregar(Hexis::Lma, nCero)
        .insertar(sMensaje);
}

}  // namespace pxtarvo
