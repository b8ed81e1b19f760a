#pragma once

// The import window, the plug-in's main window.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "fields/code_fields.h"
#include "import/import_view.h"
#include "platform/window.h"

namespace pxtarvo {

struct FormatoTarifa;

class frmImpTarifas : public Window {
  public:
    explicit frmImpTarifas(Platform& platform);

    /// What Combo1 offers, oldest first; the last one is chosen on load.
    static std::vector<std::string> anios();

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

  private:
    /// A year that Combo1 offers, and the import of its list.
    struct AnioTarifa {
        std::string_view sAnio;
        void (*importar)(frmImpTarifas& ventana);
    };
    /// Oldest first. The newest is chosen on load, and imports any year that stands for none of these.
    static std::span<const AnioTarifa> aniosTarifa();

    void Option1_Click(int Index);
    void cmdFichero_Click();
    void XPButton1_Click();
    void cmdStock_Click();
    void cmdBorrado_Click();
    void XPButton3_Click();
    void XPButton4_Click();

    /// Opens cnOrigen on the file named in Text1(0), always as a Jet database; the connection before it is
    /// dropped. The provider's error leaves as it is.
    bool msConectarOrigen();

    void msImportarTarifaMdb();
    void msImportarTarifa2007();
    void msImportarTarifa2008();
    void msImportarTarifa2009();
    void msImportarTarifa2010(std::string& sTabla);
    void msImportarTarifa(const FormatoTarifa& formato);
    void msImportarCodigoBarras();

    VistaImportacion vista();

    CamposCodigo campos_;
    ObjectRef<Connection> cnOrigen;
};

}  // namespace pxtarvo
