#include "import/row_import.h"

#include "import/discount_codes.h"
#include "import/list_columns.h"
#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

constexpr std::int16_t nCal = 11;
constexpr double nPrecioCosteNuevo = 0;
constexpr std::int32_t IdMarcaRetirada = 1;  // whatever brand the window shows

}  // namespace

/// One row of the list.
struct ImportacionTarifa::Fila {
    const Recordset& rsOrigen;
    Variant vCodigo;     ///< without blanks
    double nPrecio = 0;  ///< list price
    double nPVE = 0;     ///< selling price to write
};

ImportacionTarifa::ImportacionTarifa(VistaImportacion ventana, const FormatoTarifa& formato)
    : Corrida(std::move(ventana)), formato_(formato) {}

void ImportacionTarifa::avisarTabla() {
    if (formato_.bAvisoTabla) avisar("stabla " + std::string(formato_.sTabla));
}

void ImportacionTarifa::ejecutar() {
    if (!abrirOrigen()) return;
    const ObjectRef<Recordset> rsOrigen = ventana_.platform.createRecordset();
    const std::string sTabla(formato_.sTabla);
    std::int32_t nFilas = 0;
    if (formato_.bContarFilas) {
        avisarTabla();
        consultarOrigen(*rsOrigen, "SELECT count(*) FROM " + sTabla);
        nFilas = toLong(rsOrigen->Fields(0), locale());
        rsOrigen->Close();
    }
    avisarTabla();
    consultarOrigen(*rsOrigen, "SELECT * FROM " + sTabla);
    if (formato_.bContarFilas) {
        ventana_.ProgressBar1.setMinimum(0);
        ventana_.ProgressBar1.setMaximum(nFilas);
        ventana_.ProgressBar1.setVisible(true);
    }
    rsOrigen->MoveFirst();

    correr(Transaccion::Propia, [&] {
        retirarArticulos(formato_.marca.sNombre, IdMarcaRetirada);
        while (!rsOrigen->Eof()) {
            importarFila(*rsOrigen);
            rsOrigen->MoveNext();
        }
    });
}

void ImportacionTarifa::importarFila(const Recordset& rsOrigen) {
    ventana_.platform.desktop().doEvents();
    nFila_ += 1;
    const Variant vCodigoLista = rsOrigen.Fields(columnasTarifa.nCodigo);
    mostrarProgreso(texto(vCodigoLista));
    if (formato_.bContarFilas) ventana_.ProgressBar1.setValue(nFila_);

    Fila fila{.rsOrigen = rsOrigen, .vCodigo = trimmed(vCodigoLista, locale())};
    const ObjectRef<Recordset> rsArticulo = buscarArticulo(sCodigoArticulo, texto(fila.vCodigo));
    const bool bExiste = rsArticulo->RecordCount() > 0;
    IdArt_ = bExiste ? toLong(rsArticulo->Fields(0), locale()) : 0;
    if (bExiste && !formato_.bConservarPrecioMayor) {
        // Only so that an empty current price stops the run.
        toDouble(rsArticulo->Fields("art_Pve"), locale());
    }
    fila.nPVE = fila.nPrecio = toDouble(rsOrigen.Fields(columnasTarifa.nPrecio), locale());
    if (bExiste && formato_.bConservarPrecioMayor) {
        const Variant vActual = rsArticulo->Fields("art_Pve");
        const auto orden = compare(fila.nPrecio, vActual, locale());
        if (orden && *orden < 0) fila.nPVE = toDouble(vActual, locale());
    }

    const ObjectRef<HostDatabase> bd = MyBd();  // one reference for the row's three writes
    escribirArticulo(fila, bd);
    if (const auto sTexto =
            textoDescuento(texto(trimmed(rsOrigen.Fields(columnasTarifa.nGrupo), locale())))) {
        sDescuento_ = *sTexto;
    }
    escribirDescuento(bd);
    const std::int32_t IdArtPro = buscarArtPro();
    escribirProveedor(bd,  // a refusal goes unnoticed
                      {.vCodigo = fila.vCodigo,
                       .vDescripcion = trimmed(rsOrigen.Fields(columnasTarifa.nDescripcion), locale()),
                       .vPrecio = fila.nPrecio,
                       .vDescuento = nCero},
                      IdArtPro);
}

void ImportacionTarifa::escribirArticulo(const Fila& fila, const ObjectRef<HostDatabase>& bd) {
    EscrituraFila escritura(bd, Art::tabla);
    escritura.agregar(Art::PVE, fila.nPVE);
    if (formato_.bReactivar) escritura.agregar(Art::Estado, nCero);
    if (formato_.bFechaDeLista) {
        escritura.agregar(Art::FechaEstadoDeLista,
                          dayMonthYear(fila.rsOrigen.Fields(columnasTarifa.nFecha), locale()));
    } else {
        escritura.agregarFechaServidor(Art::FechaEstado);
    }
    if (formato_.bEscribirCal) escritura.agregar(Art::Cal, nCal);
    if (formato_.bMarcaSeleccionada) escritura.agregar(formato_.marca, ventana_.campos.IdMarca);
    if (IdArt_ != 0) {
        escritura.actualizar(condicion(Art::Id, IdArt_));
        return;
    }

    escritura.agregar(Art::Cod, fila.vCodigo)
        .agregar(Art::Des, trimmed(fila.rsOrigen.Fields(columnasTarifa.nDescripcion), locale()))
        .agregar(Art::PCO, nPrecioCosteNuevo);
    agregarConstantes(escritura);
    if (!formato_.bMarcaSeleccionada) escritura.agregar(formato_.marca, nUno);
    if (!escritura.insertar(sMensaje_)) throw RuntimeError(ErrorNumber::HostRefused, sMensaje_);
    IdArt_ = ultimoArticulo();
}

void ImportacionTarifa::escribirDescuento(const ObjectRef<HostDatabase>& bd) {
    const ObjectRef<Recordset> rsDatos =
        consultar(joined({"SELECT * FROM Aat WHERE Aat_id = ", plainNumber(IdArt_)}));
    EscrituraFila escritura(bd, Aat::tabla);
    if (rsDatos->RecordCount() > 0) {
        escritura.agregar(Aat::C01, sDescuento_).actualizar(condicion(Aat::Id, IdArt_));
    } else {
        escritura.agregar(Aat::Id, IdArt_).agregar(Aat::C01, sDescuento_).insertar(sMensaje_);
    }
}

}  // namespace pxtarvo
