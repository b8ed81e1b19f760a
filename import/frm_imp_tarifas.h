#pragma once

// The import window, the plug-in's main window.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "fields/code_fields.h"
#include "host/row_write.h"
#include "import/formato_tarifa.h"
#include "platform/window.h"

namespace pxtarvo {

class frmImpTarifas : public Window {
  public:
    explicit frmImpTarifas(Platform& platform);

    Shape Shape1;
    ControlArray<OptionButton> Option1;  ///< 0 the yearly lists, 1 the barcode list
    ControlArray<Label> Label1;
    ComboBox Combo1;              ///< the list's year
    ControlArray<TextBox> Text1;  ///< 0 source file, 1 and 2 supplier, 3 and 4 brand
    PushButton cmdFichero;
    PushButton XPButton2;  ///< carries no action
    PushButton XPButton1;  ///< starts the import
    ProgressBar ProgressBar1;
    Label Label2;           ///< progress text
    PushButton cmdStock;    ///< opens the stock window
    PushButton cmdBorrado;  ///< opens the deletion window
    PushButton XPButton4;   ///< location update
    Frame Frame1;
    Label Label3;          ///< describes the code correction
    PushButton XPButton3;  ///< code correction

  protected:
    void Form_Load() override;
    void Form_KeyUp(std::int16_t KeyCode, std::int16_t Shift) override;

  private:
    struct Corrida;
    struct Fila;
    struct FilaProveedor;
    struct FilaHistoria;

    void Option1_Click(int Index);
    void cmdFichero_Click();
    void XPButton1_Click();
    void cmdStock_Click();
    void cmdBorrado_Click();
    /// Moves the stock of one supplier's articles to the articles of the same code with a leading zero, in
    /// one transaction, after a question. An error of its first query leaves as it is, a later one rolls
    /// everything back and is shown.
    void XPButton3_Click();
    /// Gives articles without a place the one of the article file. No transaction and no trap: an error
    /// leaves as it is, with the file open and what was written before it in place.
    void XPButton4_Click();

    /// Opens cnOrigen on the file named in Text1(0), always as a Jet database; the connection before it is
    /// dropped. The provider's error leaves as it is.
    bool msConectarOrigen();

    /// Imports the list of 2006. It begins no transaction and ends one all the same: with none open on the
    /// host's connection the refused roll back leaves as an error, and what was written stays.
    void msImportarTarifaMdb();
    void msImportarTarifa2007();
    void msImportarTarifa2008();
    void msImportarTarifa2009();
    void msImportarTarifa2010(std::string& sTabla);
    /// Creates the articles of a workbook of barcodes that the host does not have, without a transaction, and
    /// closes the window. Any error ends it with a message, but for a refused insertion, which ends it
    /// without.
    void msImportarCodigoBarras();

    /// Imports the list that cnOrigen holds into the article tables, in one transaction on the host's
    /// connection, and closes the window. Errors before the transaction begins leave as they are; a later one
    /// rolls everything back and is shown with its row.
    void msImportarTarifa(const FormatoTarifa& formato);
    void avisarTabla(const FormatoTarifa& formato);
    void importarFila(const FormatoTarifa& formato, const Recordset& rsOrigen, Corrida& corrida);
    void escribirArticulo(const FormatoTarifa& formato, const Fila& fila, const ObjectRef<HostDatabase>& bd,
                          Corrida& corrida);
    void escribirDescuento(const ObjectRef<HostDatabase>& bd, const Corrida& corrida);

    void importarFila2006(const Recordset& rsOrigen, Corrida& corrida);
    void importarFilaCodigoBarras(const Worksheet& hoja, Corrida& corrida);
    void ubicarArticulo(const std::vector<std::string_view>& campos);
    void pasarExistencias(const Recordset& rsOrigen);
    void escribirHistoria(const Recordset& rsOrigen, const FilaHistoria& historia);

    // The steps that the imports share.

    /// False, after the message, where the source does not open.
    bool abrirOrigen();
    /// Runs `filas` under the trap, ends the transaction as it ended, tells the user and closes the window.
    void correr(const Corrida& corrida, const std::function<void()>& filas);
    static std::string textoError(const Corrida& corrida, const RuntimeError& error);
    void retirarArticulos(std::string_view sCampoMarca, std::int32_t IdMarca);
    void mostrarProgreso(const Corrida& corrida, std::string_view sCodigo);
    ObjectRef<Recordset> buscarArticulo(std::string_view sColumna, std::string_view sValor);
    /// The columns that every new article has.
    static void agregarConstantes(EscrituraFila& escritura);
    /// The article just inserted.
    std::int32_t ultimoArticulo();
    /// The supplier's row of the article, 0 where there is none.
    std::int32_t buscarArtPro(std::int32_t IdArt);
    /// Adds what a supplier's row is written with, and inserts it with the rest or updates `IdArtPro` (not
    /// 0). False where the host refuses the insertion.
    bool escribirProveedor(const ObjectRef<HostDatabase>& bd, const FilaProveedor& fila,
                           std::int32_t IdArtPro);

    std::string texto(const Variant& valor) const;

    CamposCodigo campos_;
    ObjectRef<Connection> cnOrigen;
};

}  // namespace pxtarvo
