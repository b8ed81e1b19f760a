// The engine of the yearly lists.

#include "import/discount_codes.h"
#include "import/run_state.h"
#include "platform/platform.h"
#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

/// Columns of the list, by position.
enum Posicion { posCodigo = 1, posPrecio = 3, posFecha = 4, posGrupo = 5, posDescripcion = 9 };

constexpr std::int16_t nCal = 11;
constexpr double nPrecioCosteNuevo = 0;
constexpr std::int32_t IdMarcaRetirada = 1;  // whatever brand the window shows

}  // namespace

/// One row of the list.
struct frmImpTarifas::Fila {
    const Recordset& rsOrigen;
    Variant vCodigo;     ///< without blanks
    double nPrecio = 0;  ///< list price
    double nPVE = 0;     ///< selling price to write
};

void frmImpTarifas::avisarTabla(const FormatoTarifa& formato) {
    if (formato.bAvisoTabla) avisar("stabla " + std::string(formato.sTabla));
}

void frmImpTarifas::msImportarTarifa(const FormatoTarifa& formato) {
    if (!abrirOrigen()) return;
    const ObjectRef<Recordset> rsOrigen = platform().createRecordset();
    const std::string sTabla(formato.sTabla);
    std::int32_t nFilas = 0;
    if (formato.bContarFilas) {
        avisarTabla(formato);
        rsOrigen->Open("SELECT count(*) FROM " + sTabla, cnOrigen, adOpenDynamic, adLockOptimistic,
                       adCmdText);
        nFilas = toLong(rsOrigen->Fields(0), platform().locale());
        rsOrigen->Close();
    }
    avisarTabla(formato);
    rsOrigen->Open("SELECT * FROM " + sTabla, cnOrigen, adOpenDynamic, adLockOptimistic, adCmdText);
    if (formato.bContarFilas) {
        ProgressBar1.setMinimum(0);
        ProgressBar1.setMaximum(nFilas);
        ProgressBar1.setVisible(true);
    }
    rsOrigen->MoveFirst();

    Corrida corrida;
    correr(corrida, [&] {
        MyBd()->Conexion()->BeginTrans();
        retirarArticulos(formato.sCampoMarca, IdMarcaRetirada);
        while (!rsOrigen->Eof()) {
            importarFila(formato, *rsOrigen, corrida);
            rsOrigen->MoveNext();
        }
    });
}

void frmImpTarifas::importarFila(const FormatoTarifa& formato, const Recordset& rsOrigen, Corrida& corrida) {
    const Locale& locale = platform().locale();
    platform().desktop().doEvents();
    corrida.nFila += 1;
    const Variant vCodigoLista = rsOrigen.Fields(posCodigo);
    mostrarProgreso(corrida, texto(vCodigoLista));
    if (formato.bContarFilas) ProgressBar1.setValue(corrida.nFila);

    Fila fila{.rsOrigen = rsOrigen, .vCodigo = trimmed(vCodigoLista, locale)};
    const ObjectRef<Recordset> rsArticulo = buscarArticulo(sCodigoArticulo, texto(fila.vCodigo));
    const bool bExiste = rsArticulo->RecordCount() > 0;
    corrida.IdArt = bExiste ? toLong(rsArticulo->Fields(0), locale) : 0;
    if (bExiste && !formato.bConservarPrecioMayor) {
        toDouble(rsArticulo->Fields("art_Pve"), locale);  // only so that an empty current price stops the run
    }
    fila.nPVE = fila.nPrecio = toDouble(rsOrigen.Fields(posPrecio), locale);
    if (bExiste && formato.bConservarPrecioMayor) {
        const Variant vActual = rsArticulo->Fields("art_Pve");
        const auto orden = compare(fila.nPrecio, vActual, locale);
        if (orden && *orden < 0) fila.nPVE = toDouble(vActual, locale);
    }

    const ObjectRef<HostDatabase> bd = MyBd();  // one reference for the row's three writes
    escribirArticulo(formato, fila, bd, corrida);
    if (const auto sTexto = textoDescuento(texto(trimmed(rsOrigen.Fields(posGrupo), locale)))) {
        corrida.sDescuento = *sTexto;
    }
    escribirDescuento(bd, corrida);
    const std::int32_t IdArtPro = buscarArtPro(corrida.IdArt);
    escribirProveedor(bd,  // a refusal goes unnoticed
                      {.IdArt = corrida.IdArt,
                       .vCodigo = fila.vCodigo,
                       .vDescripcion = trimmed(rsOrigen.Fields(posDescripcion), locale),
                       .vPrecio = fila.nPrecio,
                       .vDescuento = nCero},
                      IdArtPro);
}

void frmImpTarifas::escribirArticulo(const FormatoTarifa& formato, const Fila& fila,
                                     const ObjectRef<HostDatabase>& bd, Corrida& corrida) {
    const Locale& locale = platform().locale();
    const Columna& marca = Art::tabla.columna(formato.sCampoMarca);
    EscrituraFila escritura(bd, Art::tabla);
    escritura.agregar(Art::PVE, fila.nPVE);
    if (formato.bReactivar) escritura.agregar(Art::Estado, nCero);
    if (formato.bFechaDeLista) {
        escritura.agregar(Art::FechaEstadoDeLista, dayMonthYear(fila.rsOrigen.Fields(posFecha), locale));
    } else {
        escritura.agregarFechaServidor(Art::FechaEstado);
    }
    if (formato.bEscribirCal) escritura.agregar(Art::Cal, nCal);
    if (formato.bMarcaSeleccionada) escritura.agregar(marca, campos_.IdMarca);
    if (corrida.IdArt != 0) {
        escritura.actualizar(condicion(Art::Id, corrida.IdArt));
        return;
    }

    escritura.agregar(Art::Cod, fila.vCodigo)
        .agregar(Art::Des, trimmed(fila.rsOrigen.Fields(posDescripcion), locale))
        .agregar(Art::PCO, nPrecioCosteNuevo);
    agregarConstantes(escritura);
    if (!formato.bMarcaSeleccionada) escritura.agregar(marca, nUno);
    std::string sMensaje;
    if (!escritura.insertar(sMensaje)) throw RuntimeError(ErrorNumber::HostRefused, sMensaje);
    corrida.IdArt = ultimoArticulo();
}

void frmImpTarifas::escribirDescuento(const ObjectRef<HostDatabase>& bd, const Corrida& corrida) {
    const ObjectRef<Recordset> rsDatos =
        consultar(joined({"SELECT * FROM Aat WHERE Aat_id = ", plainNumber(corrida.IdArt)}));
    EscrituraFila escritura(bd, Aat::tabla);
    if (rsDatos->RecordCount() > 0) {
        escritura.agregar(Aat::C01, corrida.sDescuento).actualizar(condicion(Aat::Id, corrida.IdArt));
    } else {
        std::string sMensaje;
        escritura.agregar(Aat::Id, corrida.IdArt).agregar(Aat::C01, corrida.sDescuento).insertar(sMensaje);
    }
}

}  // namespace pxtarvo
