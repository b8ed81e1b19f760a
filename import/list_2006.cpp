// The list of 2006: a table of its own, discount percentages and a net cost price.

#include "import/discount_codes.h"
#include "import/run_state.h"
#include "platform/platform.h"
#include "platform/values/conversion.h"

namespace pxtarvo {

namespace {

constexpr std::string_view sTabla2006 = "31EUR000";
constexpr std::int16_t nDecimales = 2;

/// Columns of the list, by position.
enum Posicion { posCodigo = 1, posDescripcion = 3, posPrecio = 4, posGrupo = 5 };

}  // namespace

void frmImpTarifas::msImportarTarifaMdb() {
    if (!abrirOrigen()) return;
    const ObjectRef<Recordset> rsOrigen = platform().createRecordset();
    rsOrigen->Open("SELECT * FROM " + std::string(sTabla2006), cnOrigen, adOpenDynamic, adLockOptimistic,
                   adCmdText);
    rsOrigen->MoveFirst();

    Corrida corrida;
    correr(corrida, [&] {
        while (!rsOrigen->Eof()) {
            importarFila2006(*rsOrigen, corrida);
            rsOrigen->MoveNext();
        }
    });
}

void frmImpTarifas::importarFila2006(const Recordset& rsOrigen, Corrida& corrida) {
    const Locale& locale = platform().locale();
    platform().desktop().doEvents();
    corrida.nFila += 1;
    const Variant vCodigoLista = rsOrigen.Fields(posCodigo);
    mostrarProgreso(corrida, texto(vCodigoLista));

    const Variant vCodigo = trimmed(vCodigoLista, locale);
    const ObjectRef<Recordset> rsArticulo = buscarArticulo(sCodigoArticulo, texto(vCodigo));
    corrida.IdArt = 0;
    if (rsArticulo->RecordCount() > 0) {
        corrida.IdArt = toLong(rsArticulo->Fields(0), locale);
        toDouble(rsArticulo->Fields("art_Pve"), locale);  // only so that an empty current price stops the run
    }
    if (Combo1.text() == sAnio2006) {  // the user may choose another year during the run
        corrida.nDescuento = porcentajeDescuento(texto(trimmed(rsOrigen.Fields(posGrupo), locale)));
    }
    const double nPrecio = toDouble(rsOrigen.Fields(posPrecio), locale);
    const double nImporte = campos_.oAyuda->Redondear(nPrecio / 100 * corrida.nDescuento, nDecimales);
    const double nCoste = campos_.oAyuda->Redondear(nPrecio - nImporte, nDecimales);

    const ObjectRef<HostDatabase> bd = MyBd();  // one reference for the row's two writes
    EscrituraFila escritura(bd, Art::tabla);
    escritura.agregar(Art::PVE, nPrecio).agregar(Art::PCO, nCoste);
    if (corrida.IdArt != 0) {
        escritura.actualizar(condicion(Art::Id, corrida.IdArt));
    } else {
        escritura.agregar(Art::Cod, vCodigo)
            .agregar(Art::Des, trimmed(rsOrigen.Fields(posDescripcion), locale));
        agregarConstantes(escritura);
        std::string sMensaje;
        escritura.agregar(Art::Mar, nUno).insertar(sMensaje);  // brand 1, whatever brand the window shows
        corrida.IdArt = ultimoArticulo();                      // after a refusal the newest one there is
    }
    const std::int32_t IdArtPro = buscarArtPro(corrida.IdArt);
    escribirProveedor(bd,  // a refusal goes unnoticed
                      {.IdArt = corrida.IdArt,
                       .vCodigo = vCodigo,
                       .vDescripcion = trimmed(rsOrigen.Fields(posDescripcion), locale),
                       .vPrecio = nPrecio,
                       .vDescuento = static_cast<double>(corrida.nDescuento)},
                      IdArtPro);
}

}  // namespace pxtarvo
