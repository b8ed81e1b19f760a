#pragma once

// The field helper of the host's shared library, one per window: field colours, key filter, display formats,
// the modal search list, rounding.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/database.h"

namespace pxtarvo {

/// Separates the columns of the row that Buscar returns.
inline constexpr char separadorBuscar = '\x01';

struct Busqueda {
    std::string sSQL;    ///< identifier first, the two columns to show second and third
    std::string sCampo;  ///< the column that is searched
    std::string sTitulo1;
    std::string sTitulo2;
    std::string sTituloVentana;
    std::int32_t nAncho1 = 0;
    std::int32_t nAncho2 = 0;
    std::int32_t nOpcion = 0;
};

class HostFieldHelper {
  public:
    virtual ~HostFieldHelper() = default;

    virtual double Redondear(double valor, std::int16_t decimales) = 0;
    /// Colour (0x00BBGGRR) of a field without the focus.
    virtual void ColorFondo(double color) = 0;
    /// Colour of the field that has the focus.
    virtual void ColorFoco(double color) = 0;
    /// A field loses the focus; `sFormato` is "", "dd/mm/yyyy" or "#,###,##0.00".
    virtual void SalirCampo(TextBox& campo, std::string_view sFormato) = 0;
    virtual void EntrarCampo(TextBox& campo, std::string_view sFormato) = 0;
    virtual void Conexion(const ObjectRef<Connection>& conexion) = 0;
    /// May change the key or cancel it (0).
    virtual void FiltrarTecla(TextBox& campo, std::int16_t& KeyAscii, bool bFecha) = 0;
    /// The chosen row's three columns joined by separadorBuscar, or at most 2 characters when nothing was
    /// chosen.
    virtual std::string Buscar(const Busqueda& busqueda) = 0;
};

}  // namespace pxtarvo
