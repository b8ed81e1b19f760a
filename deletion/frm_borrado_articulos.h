#pragma once

// The deletion window: lists the articles that no movement refers to, and deletes all that it found.

#include <string>
#include <string_view>

#include "deletion/campos_borrado.h"
#include "platform/window.h"

namespace pxtarvo {

/// Ends a deletion that was committed.
inline constexpr std::string_view sBorradoFinalizado = "Proceso de borrado finalizado";

class frmBorradoArticulos : public Window {
  public:
    explicit frmBorradoArticulos(Platform& platform);

    /// The caption of the loaded window: its title and the plug-in's version.
    static std::string tituloConVersion();

    Frame Frame1;  ///< the criteria
    ControlArray<Label> Label1;
    ControlArray<TextBox> Text1;  ///< 3 and 4 brand, 1 the latest date of the state
    CheckBox Check1;              ///< read by nothing
    Frame Frame7;                 ///< the state
    OptionButton Option3;         ///< every state
    OptionButton Option1;         ///< active
    OptionButton Option2;         ///< retired
    PushButton cmdInicio;         ///< searches, once
    PushButton cmdBorrar;         ///< deletes what was found
    PushButton cmdSalir;
    ListView ListView1;  ///< never filled
    DataGrid dbgDatos;   ///< the articles found
    ProgressBar ProgressBar1;
    Label Label2;  ///< status text

    CamposBorrado& campos() noexcept { return campos_; }

  protected:
    void Form_Load() override;

  private:
    /// Searches by the criteria. Nothing traps its errors: after one the window stays disabled and the
    /// pointer busy.
    void cmdInicio_Click();
    /// Deletes every article found with its stock, in one transaction, and closes the window. What fails
    /// rolls everything back and is shown, but for a refusal of the host.
    void cmdBorrar_Click();

    std::string criterios() const;
    void mostrarResultado();
    void borrarArticulo();
    MessageAnswer mensaje(std::string_view sTexto, MessageIcon icono,
                          MessageButtons botones = MessageButtons::Ok);

    CamposBorrado campos_;
    /// The search's result, which the grid shows and the deletion walks.
    ObjectRef<Recordset> rsBusqueda;
};

}  // namespace pxtarvo
