// The barcode list, a workbook read cell by cell.

#include "import/run_state.h"
#include "platform/error_trap.h"
#include "platform/platform.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

/// Columns of the sheet.
enum Columnas { colCodigo = 1, colDescripcion = 2, colCodigoBarras = 3 };

constexpr std::int32_t primeraHoja = 1;

}  // namespace

void frmImpTarifas::msImportarCodigoBarras() {
    Corrida corrida;
    // Held until the end of the procedure, the message included.
    ObjectRef<SpreadsheetApplication> aplicacion;
    ObjectRef<Workbook> libro;
    ObjectRef<Worksheet> hoja;
    const auto bHayFila = [&] {
        const Variant vCodigo = hoja->Cells(static_cast<std::int32_t>(corrida.nFila), colCodigo);
        return !trimBlanks(texto(vCodigo)).empty();
    };
    const auto error = trapped([&] {
        if (campos_.IdMarca > 0) retirarArticulos(Art::Mar.sNombre, campos_.IdMarca);
        aplicacion = platform().createSpreadsheet();
        libro = aplicacion->OpenWorkbook(Text1[0].text());
        ProgressBar1.setMinimum(0);
        ProgressBar1.setMaximum(libro->SheetCount());  // the sheets, not the rows; it never advances
        ProgressBar1.setVisible(true);
        hoja = libro->Sheet(primeraHoja);
        for (corrida.nFila = 1; bHayFila(); corrida.nFila += 1) importarFilaCodigoBarras(*hoja, corrida);
    });
    if (!error) {
        avisar(sExito);
    } else if (!error->is(ErrorNumber::HostRefused)) {
        avisar(textoError(corrida, *error));
    }
    Unload();
}

void frmImpTarifas::importarFilaCodigoBarras(const Worksheet& hoja, Corrida& corrida) {
    const auto celda = [&](Columnas columna) {
        return texto(hoja.Cells(static_cast<std::int32_t>(corrida.nFila), columna));
    };
    std::string sCodigo = celda(colCodigo);
    const std::string sDescripcion = replaced(trimBlanks(celda(colDescripcion)), "'", "");
    const std::string sCodigoBarras(trimBlanks(celda(colCodigoBarras)));
    platform().desktop().doEvents();
    mostrarProgreso(corrida, sCodigo);

    // A known barcode leaves the article of the row before in place.
    if (buscarArticulo(sCodigoBarrasArticulo, sCodigoBarras)->RecordCount() < 1) {
        corrida.IdArt = 0;
        if (buscarArticulo(sCodigoArticulo, sCodigo)->RecordCount() > 0) sCodigo = sCodigoBarras;
    }
    ObjectRef<HostDatabase> bd;  // one reference for the row's writes
    if (corrida.IdArt == 0) {
        bd = MyBd();
        EscrituraFila escritura(bd, Art::tabla);
        escritura.agregar(Art::Cod, sCodigo)
            .agregar(Art::Des, sDescripcion)
            .agregar(Art::barCode, sCodigoBarras)
            .agregar(Art::Mar, campos_.IdMarca)
            .agregar(Art::PVE, nCero)
            .agregar(Art::Estado, nCero)
            .agregarFechaServidor(Art::FechaEstado)
            .agregar(Art::PCO, nCero);
        agregarConstantes(escritura);
        std::string sMensaje;
        if (!escritura.insertar(sMensaje)) throw RuntimeError(ErrorNumber::HostRefused);
        corrida.IdArt = ultimoArticulo();
    }
    if (buscarArtPro(corrida.IdArt) != 0) return;
    if (!bd) bd = MyBd();
    const bool bInsertado = escribirProveedor(bd,
                                              {.IdArt = corrida.IdArt,
                                               .vCodigo = sCodigo,
                                               .vDescripcion = sDescripcion,
                                               .vPrecio = nCero,
                                               .vDescuento = nCero},
                                              0);
    if (!bInsertado) throw RuntimeError(ErrorNumber::HostRefused);
}

}  // namespace pxtarvo
