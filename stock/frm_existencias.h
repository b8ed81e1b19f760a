#pragma once

// The stock window: writes the stock file that the dealer sends to the supplier.

#include <string>

#include "fields/code_fields.h"
#include "platform/window.h"

namespace pxtarvo {

class LineasExistencias;

class frmExistencias : public Window {
  public:
    explicit frmExistencias(Platform& platform);

    ControlArray<Label> Label1;
    /// 5 client code, 6 sales organisation, 7 shipping address, 0 the file to write, 1 and 2 supplier, 3 and
    /// 4 brand.
    ControlArray<TextBox> Text1;
    PushButton cmdFichero;
    PushButton XPButton1;  ///< writes the file
    ProgressBar ProgressBar1;
    Label Label2;  ///< progress text

  protected:
    void Form_Load() override;

  private:
    void cmdFichero_Click();
    /// Checks the fields and writes the file. Nothing traps its errors: after one the pointer stays busy and
    /// the file open.
    void XPButton1_Click();

    /// Whether every field is filled in; the first that is not is said and gets the focus.
    bool camposCompletos();
    void escribirArticulo(int nFichero, const LineasExistencias& lineas, const Recordset& rsArticulos);
    std::string texto(const Variant& valor) const;

    CamposCodigo campos_;
};

}  // namespace pxtarvo
