#pragma once

// The code fields of the deletion window. It has its own copies of these procedures, which differ from those
// of the other windows.

#include "fields/code_fields.h"

namespace pxtarvo {

class CamposBorrado : public CamposCodigo {
  public:
    CamposBorrado(Window& ventana, const ControlArray<TextBox>& Text1);

    /// The connection first, then the colours.
    void crearAyuda() override;
    void Text1_LostFocus(int Index) override;

    /// Looks a supplier up by its identifier `IdPro` or, where that is 0, by the code `nProveedor`; -1 and 0
    /// ask the user to search, which sets `IdPro`. No control of the window leads here. Raises the host's
    /// error where it lacks the parameter PAR_ORCONTANOM, and 340 once it has set the identifier: the window
    /// has no supplier code field.
    void msBuscarProveedor(std::int32_t nProveedor, std::int32_t& IdPro);

  protected:
    /// Made at its first use.
    HostFieldHelper& ayuda() override;
    void buscarProveedor() override;
};

}  // namespace pxtarvo
