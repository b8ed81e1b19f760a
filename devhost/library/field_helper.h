#pragma once

// The field helper of the development host.

#include <memory>

#include "devhost/library/dev_user.h"
#include "devhost/record/recorder.h"
#include "host/host_field_helper.h"
#include "platform/values/locale.h"

namespace pxtarvo::devhost {

class DevFieldHelper : public HostFieldHelper {
  public:
    /// Offers its search lists to `user`; the recorder may be empty.
    DevFieldHelper(std::shared_ptr<DevUser> user, std::shared_ptr<Recorder> recorder, const Locale& locale);

    /// Halves away from zero, judged on the decimal value; 0 to 9 decimals, 5 beyond.
    double Redondear(double valor, std::int16_t decimales) override;
    void ColorFondo(double color) override;
    void ColorFoco(double color) override;
    /// "dd/mm/yyyy" writes a date out in full (25072006 and 250706 become 25/07/2006), "#,###,##0.00" a
    /// number with grouping and two decimals; a text that is neither stays as it is.
    void SalirCampo(TextBox& campo, std::string_view sFormato) override;
    /// Selects what the field holds.
    void EntrarCampo(TextBox& campo, std::string_view sFormato) override;
    void Conexion(const ObjectRef<Connection>& conexion) override;
    /// Lets digits through, control keys, and "/" in a date or the signs and the decimal separator in a
    /// number; cancels any other key.
    void FiltrarTecla(TextBox& campo, std::int16_t& KeyAscii, bool bFecha) override;
    /// Empty when nothing was chosen. Raises the provider's error of the query, 91 without a connection.
    std::string Buscar(const Busqueda& busqueda) override;

  private:
    std::string chosenRow(const Busqueda& busqueda);

    std::shared_ptr<DevUser> user_;
    std::shared_ptr<Recorder> recorder_;
    const Locale& locale_;
    ObjectRef<Connection> connection_;
    std::uint32_t normalColor_ = 0x00FFFFFF;
    std::uint32_t focusColor_ = 0x00FFFFFF;
};

}  // namespace pxtarvo::devhost
