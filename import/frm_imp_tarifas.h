#pragma once

// The import window, the plug-in's main window.

#include <string>

#include "fields/code_fields.h"
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

    void Option1_Click(int Index);
    void cmdFichero_Click();
    void XPButton1_Click();

    /// Opens cnOrigen on the file named in Text1(0), always as a Jet database; the connection before it is
    /// dropped. The provider's error leaves as it is.
    bool msConectarOrigen();

    void msImportarTarifa2007();
    void msImportarTarifa2008();
    void msImportarTarifa2009();
    void msImportarTarifa2010(std::string& sTabla);

    /// Imports the list that cnOrigen holds into the article tables, in one transaction on the host's
    /// connection, and closes the window. Errors before the transaction begins leave as they are; a later one
    /// rolls everything back and is shown with its row.
    void msImportarTarifa(const FormatoTarifa& formato);
    void avisarTabla(const FormatoTarifa& formato);
    void retirarArticulos(const FormatoTarifa& formato);
    void importarFila(const FormatoTarifa& formato, const Recordset& rsOrigen, Corrida& corrida);
    void escribirArticulo(const FormatoTarifa& formato, const Fila& fila, const ObjectRef<HostDatabase>& bd,
                          Corrida& corrida);
    void escribirDescuento(const ObjectRef<HostDatabase>& bd, const Corrida& corrida);
    void escribirProveedor(const Fila& fila, const ObjectRef<HostDatabase>& bd, const Corrida& corrida);

    /// Runs `sSQL` on the host's connection, read afresh.
    ObjectRef<Recordset> consultar(std::string_view sSQL);
    std::string texto(const Variant& valor) const;

    CamposCodigo campos_;
    ObjectRef<Connection> cnOrigen;
};

}  // namespace pxtarvo
