#include "import/barcode_list.h"

#include "fields/window_texts.h"
#include "import/list_columns.h"
#include "platform/error_trap.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {
constexpr std::int32_t primeraHoja = 1;
}  // namespace

void ImportacionCodigosBarras::ejecutar() {
    // Held until the end of the procedure, the message included.
    ObjectRef<SpreadsheetApplication> aplicacion;
    ObjectRef<Workbook> libro;
    ObjectRef<Worksheet> hoja;
    const auto bHayFila = [&] {
        const Variant vCodigo = hoja->Cells(static_cast<std::int32_t>(nFila_), columnasCodigosBarras.nCodigo);
        return !trimBlanks(texto(vCodigo)).empty();
    };
    const auto error = trapped([&] {
        if (ventana_.campos.IdMarca > 0) retirarArticulos(Art::Mar.sNombre, ventana_.campos.IdMarca);
        aplicacion = ventana_.platform.createSpreadsheet();
        libro = aplicacion->OpenWorkbook(ventana_.Fichero.text());
        ventana_.ProgressBar1.setMinimum(0);
        ventana_.ProgressBar1.setMaximum(libro->SheetCount());  // the sheets, not the rows; it never advances
        ventana_.ProgressBar1.setVisible(true);
        hoja = libro->Sheet(primeraHoja);
        for (nFila_ = 1; bHayFila(); nFila_ += 1) importarFila(*hoja);
    });
    if (!error) {
        avisar(sExito);
    } else if (!error->is(ErrorNumber::HostRefused)) {
        avisar(textoError(*error));
    }
    ventana_.Unload();
}

void ImportacionCodigosBarras::importarFila(const Worksheet& hoja) {
    const auto celda = [&](std::int32_t columna) {
        return texto(hoja.Cells(static_cast<std::int32_t>(nFila_), columna));
    };
    std::string sCodigo = celda(columnasCodigosBarras.nCodigo);
    const std::string sDescripcion = replaced(trimBlanks(celda(columnasCodigosBarras.nDescripcion)), "'", "");
    const std::string sCodigoBarras(trimBlanks(celda(columnasCodigosBarras.nCodigoBarras)));
    ventana_.platform.desktop().doEvents();
    mostrarProgreso(sCodigo);

    // A known barcode leaves the article of the row before in place.
    if (buscarArticulo(sCodigoBarrasArticulo, sCodigoBarras)->RecordCount() < 1) {
        IdArt_ = 0;
        if (buscarArticulo(sCodigoArticulo, sCodigo)->RecordCount() > 0) sCodigo = sCodigoBarras;
    }
    ObjectRef<HostDatabase> bd;  // one reference for the row's writes
    if (IdArt_ == 0) {
        bd = MyBd();
        EscrituraFila escritura(bd, Art::tabla);
        escritura.agregar(Art::Cod, sCodigo)
            .agregar(Art::Des, sDescripcion)
            .agregar(Art::barCode, sCodigoBarras)
            .agregar(Art::Mar, ventana_.campos.IdMarca)
            .agregar(Art::PVE, nCero)
            .agregar(Art::Estado, nCero)
            .agregarFechaServidor(Art::FechaEstado)
            .agregar(Art::PCO, nCero);
        agregarConstantes(escritura);
        if (!escritura.insertar(sMensaje_)) throw RuntimeError(ErrorNumber::HostRefused);
        IdArt_ = ultimoArticulo();
    }
    if (buscarArtPro() != 0) return;
    if (!bd) bd = MyBd();
    const bool bInsertado = escribirProveedor(
        bd, {.vCodigo = sCodigo, .vDescripcion = sDescripcion, .vPrecio = nCero, .vDescuento = nCero}, 0);
    if (!bInsertado) throw RuntimeError(ErrorNumber::HostRefused);
}

}  // namespace pxtarvo
