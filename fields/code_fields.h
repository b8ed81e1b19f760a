#pragma once

// The supplier and brand code fields of a window: their check against the host's tables, their F1 searches
// and the focus and key handling that goes with them.

#include <cstdint>
#include <string>

#include "fields/window_rules.h"
#include "host/host_field_helper.h"
#include "module/mdo_pxtarvo.h"
#include "platform/window.h"

namespace pxtarvo {

inline constexpr std::string_view etiquetaProveedor = "Proveedor";
inline constexpr std::string_view etiquetaMarca = "Marca";
/// The window's tag after a message: the next Enter only closed that message.
inline constexpr std::string_view etiquetaAviso = "e";

/// None of the members traps an error: a code that is no number is 13, a failing query its provider's error.
class CamposCodigo {
  public:
    CamposCodigo(Window& ventana, const ControlArray<TextBox>& Text1, const ReglasVentana& reglas)
        : ventana_(ventana), Text1_(Text1), reglas_(reglas) {}
    virtual ~CamposCodigo() = default;

    /// Pro_ID of the chosen supplier, 0 when none.
    std::int32_t IdProveedor = 0;
    /// Marca_ID of the chosen brand, 0 when none.
    std::int32_t IdMarca = 0;
    ObjectRef<HostFieldHelper> oAyuda;

    /// Creates the helper and gives it the colours and the host's connection.
    virtual void crearAyuda();
    /// Hands the window its key preview and its text boxes their handlers, by index.
    void atenderCampos();

    /// Looks up the supplier code `nProveedor`; a negative one asks the user to search.
    void msBuscarProveedor(std::int32_t nProveedor);
    /// Looks up the brand code `sMarca`; an empty or blank one asks the user to search, and takes the code
    /// chosen.
    void msBuscarMarca(std::string& sMarca);

    void Text1_GotFocus(int Index);
    virtual void Text1_LostFocus(int Index);
    void Text1_KeyPress(int Index, std::int16_t& KeyAscii);
    void Form_KeyUp(std::int16_t KeyCode, std::int16_t Shift);

    /// Shows `sTexto` so that the Enter which closes it does not move the focus, then puts the focus on
    /// `Text1(Index)`.
    void avisarEnCampo(std::string_view sTexto, int Index);
    /// Says that no supplier, or no brand, is chosen, and puts the focus on its field. False, and nothing
    /// said, where one is.
    bool avisarSinProveedor();
    bool avisarSinMarca();

  protected:
    /// What a window's own copies of these procedures share with the others.

    /// The helper; 91 before it was created.
    virtual HostFieldHelper& ayuda() { return *oAyuda; }
    void darColores();
    /// Whether an answer of the search list is a chosen row.
    static bool eligio(std::string_view sElegido);
    /// The supplier search by F1.
    virtual void buscarProveedor() { msBuscarProveedor(nBusquedaInteractiva); }
    /// A search list of suppliers.
    struct ListaProveedores {
        std::string_view sSQL;
        std::string_view sCampo;
        std::string_view sTituloVentana;
    };
    /// Asks whether to search suppliers by their fiscal name (no means by the commercial one) and opens that
    /// list, its names under `sTituloNombre`. What the list answers.
    std::string elegirProveedor(const ListaProveedores& fiscal, const ListaProveedores& comercial,
                                std::string_view sTituloNombre);
    void escribir(int Index, std::string_view sTexto) { Text1_[Index].setText(sTexto); }
    /// The code in `Text1(Index)` and its name, which stands in the next one.
    void escribirCodigo(int Index, std::string_view sCodigo, std::string_view sNombre);

    /// In place of a supplier code: asks the user to search.
    static constexpr std::int32_t nBusquedaInteractiva = -1;

    Window& ventana_;
    const ControlArray<TextBox>& Text1_;
    const ReglasVentana& reglas_;

  private:
    void buscarProveedorPorNombre();
    bool preguntarNombreFiscal();
};

/// How a date field is shown.
inline constexpr std::string_view sFormatoFecha = "dd/mm/yyyy";

}  // namespace pxtarvo
