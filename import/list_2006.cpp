#include "import/list_2006.h"

#include "import/discount_codes.h"
#include "import/list_columns.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

constexpr std::int16_t nDecimales = 2;

}  // namespace

void Importacion2006::ejecutar() {
    if (!abrirOrigen()) return;
    const ObjectRef<Recordset> rsOrigen = ventana_.platform.createRecordset();
    consultarOrigen(*rsOrigen, joined({"SELECT * FROM ", sTabla2006}));
    rsOrigen->MoveFirst();

    correr(Transaccion::DelAnfitrion, [&] {
        while (!rsOrigen->Eof()) {
            importarFila(*rsOrigen);
            rsOrigen->MoveNext();
        }
    });
}

void Importacion2006::importarFila(const Recordset& rsOrigen) {
    ventana_.platform.desktop().doEvents();
    nFila_ += 1;
    const Variant vCodigoLista = rsOrigen.Fields(columnas2006.nCodigo);
    mostrarProgreso(texto(vCodigoLista));

    const Variant vCodigo = trimmed(vCodigoLista, locale());
    const ObjectRef<Recordset> rsArticulo = buscarArticulo(sCodigoArticulo, texto(vCodigo));
    IdArt_ = 0;
    if (rsArticulo->RecordCount() > 0) {
        IdArt_ = toLong(rsArticulo->Fields(0), locale());
        // Only so that an empty current price stops the run.
        toDouble(rsArticulo->Fields("art_Pve"), locale());
    }
    if (ventana_.Combo1.text() == sAnio2006) {  // the user may choose another year during the run
        nDescuento_ = porcentajeDescuento(texto(trimmed(rsOrigen.Fields(columnas2006.nGrupo), locale())));
    }
    const double nPrecio = toDouble(rsOrigen.Fields(columnas2006.nPrecio), locale());
    const double nImporte = ventana_.campos.oAyuda->Redondear(nPrecio / 100 * nDescuento_, nDecimales);
    const double nCoste = ventana_.campos.oAyuda->Redondear(nPrecio - nImporte, nDecimales);

    const ObjectRef<HostDatabase> bd = MyBd();  // one reference for the row's two writes
    EscrituraFila escritura(bd, Art::tabla);
    escritura.agregar(Art::PVE, nPrecio).agregar(Art::PCO, nCoste);
    if (IdArt_ != 0) {
        escritura.actualizar(condicion(Art::Id, IdArt_));
    } else {
        escritura.agregar(Art::Cod, vCodigo)
            .agregar(Art::Des, trimmed(rsOrigen.Fields(columnas2006.nDescripcion), locale()));
        agregarConstantes(escritura);
        escritura.agregar(Art::Mar, nUno).insertar(sMensaje_);  // brand 1, whatever brand the window shows
        IdArt_ = ultimoArticulo();                              // after a refusal the newest one there is
    }
    const std::int32_t IdArtPro = buscarArtPro();
    escribirProveedor(bd,  // a refusal goes unnoticed
                      {.vCodigo = vCodigo,
                       .vDescripcion = trimmed(rsOrigen.Fields(columnas2006.nDescripcion), locale()),
                       .vPrecio = nPrecio,
                       .vDescuento = static_cast<double>(nDescuento_)},
                      IdArtPro);
}

}  // namespace pxtarvo
