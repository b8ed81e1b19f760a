// The engine of the yearly lists.

#include "host/row_write.h"
#include "import/discount_codes.h"
#include "import/frm_imp_tarifas.h"
#include "platform/conversion.h"
#include "platform/platform.h"
#include "platform/text.h"

namespace pxtarvo {

namespace {

/// Columns of the list, by position.
enum Posicion { posCodigo = 1, posPrecio = 3, posFecha = 4, posGrupo = 5, posDescripcion = 9 };

constexpr std::int16_t nCero = 0;
constexpr std::int16_t nUno = 1;
constexpr std::int16_t nCal = 11;
constexpr double nPrecioCosteNuevo = 0;

}  // namespace

/// What one run keeps from row to row.
struct frmImpTarifas::Corrida {
    double nFila = 0;        ///< 1-based; 0 before the first row
    std::int32_t IdArt = 0;  ///< the row's article, 0 while it is not known to exist
    std::string sDescuento;  ///< of the last recognised group; never emptied
};

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
    if (!msConectarOrigen()) {
        avisar("Error en la conexion con origen datos ");  // no error is pending that could describe it
        return;
    }
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
    std::string sResultado = "Proceso finalizado con exito";
    try {
        MyBd()->Conexion()->BeginTrans();
        retirarArticulos(formato);
        while (!rsOrigen->Eof()) {
            importarFila(formato, *rsOrigen, corrida);
            rsOrigen->MoveNext();
        }
        MyBd()->Conexion()->CommitTrans();
    } catch (const RuntimeError& error) {
        MyBd()->Conexion()->RollbackTrans();
        sResultado = "Registro " + plainNumber(corrida.nFila) + ". " + error.description();
    }
    avisar(sResultado);
    Unload();
}

void frmImpTarifas::retirarArticulos(const FormatoTarifa& formato) {
    // Brand 1, whatever brand the window shows.
    std::string sSQL = "UPDATE Art Set Art_Estado=1, Art_FechaEstado = '";
    sSQL.append(dayMonthYear(platform().clock().now()));
    sSQL.append("' WHERE Art_Estado =0 AND ").append(formato.sCampoMarca).append(" = 1");
    consultar(sSQL);
}

void frmImpTarifas::importarFila(const FormatoTarifa& formato, const Recordset& rsOrigen, Corrida& corrida) {
    const Locale& locale = platform().locale();
    platform().desktop().doEvents();
    corrida.nFila += 1;
    const Variant vCodigoLista = rsOrigen.Fields(posCodigo);
    Label2.setCaption(joined({"Procesado registro ", plainNumber(corrida.nFila), " ", texto(vCodigoLista)}));
    if (formato.bContarFilas) ProgressBar1.setValue(corrida.nFila);

    Fila fila{.rsOrigen = rsOrigen, .vCodigo = trimmed(vCodigoLista, locale)};
    const ObjectRef<Recordset> rsArticulo =
        consultar(joined({"SELECT * FROM Art WHERE Art_Cod = '", texto(fila.vCodigo), "'"}));
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
    escribirProveedor(fila, bd, corrida);
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
        .agregar(Art::PCO, nPrecioCosteNuevo)
        .agregar(Art::Rod, nCero)
        .agregar(Art::Pas, nCero)
        .agregar(Art::Mat, nCero)
        .agregar(Art::TIPO, nUno)
        .agregar(Art::Alma, nUno);
    if (!formato.bMarcaSeleccionada) escritura.agregar(marca, nUno);
    std::string sMensaje;
    if (!escritura.insertar(sMensaje)) throw RuntimeError(ErrorNumber::HostRefused, sMensaje);
    corrida.IdArt = toLong(consultar("SELECT MAX(Art_Id) FROM Art")->Fields(0), locale);
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

void frmImpTarifas::escribirProveedor(const Fila& fila, const ObjectRef<HostDatabase>& bd,
                                      const Corrida& corrida) {
    const Locale& locale = platform().locale();
    const ObjectRef<Recordset> rsProveedor =
        consultar(joined({"SELECT * FROM ArtPro WHERE ARP_Ida = ", plainNumber(corrida.IdArt),
                          " AND ARP_Idp = ", plainNumber(campos_.IdProveedor)}));
    const std::int32_t IdArtPro = rsProveedor->RecordCount() > 0 ? toLong(rsProveedor->Fields(0), locale) : 0;
    EscrituraFila escritura(bd, ArtPro::tabla);
    escritura.agregar(ArtPro::des, trimmed(fila.rsOrigen.Fields(posDescripcion), locale))
        .agregar(ArtPro::Precio, fila.nPrecio)
        .agregar(ArtPro::Descuento, nCero);
    if (IdArtPro != 0) {
        escritura.actualizar(condicion(ArtPro::Id, IdArtPro));
    } else {
        std::string sMensaje;
        escritura.agregar(ArtPro::Cop, fila.vCodigo)
            .agregar(ArtPro::Idp, campos_.IdProveedor)
            .agregar(ArtPro::Ida, corrida.IdArt)
            .insertar(sMensaje);
    }
}

}  // namespace pxtarvo
