#pragma once

#include <map>

#include "host/host_field_helper.h"
#include "host/windows/text_box_object.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::windows {

/// The field helper's programmatic identifier in the host's library. A host whose library names it otherwise
/// registers this name too.
inline constexpr std::string_view fieldHelperIdentifier = "HostFields.FieldHelper";

/// The host's field helper reached through automation. Text boxes are handed over as automation objects, the
/// same one for the same box; they are cut off from their boxes when the helper goes, which is before the
/// window does.
class AutomationFieldHelper : public HostFieldHelper {
  public:
    /// A new helper; 429 where the host has none.
    static ObjectRef<HostFieldHelper> create();

    explicit AutomationFieldHelper(Dispatch helper) : helper_(std::move(helper)) {}
    AutomationFieldHelper(const AutomationFieldHelper&) = delete;
    AutomationFieldHelper& operator=(const AutomationFieldHelper&) = delete;
    ~AutomationFieldHelper() override;

    double Redondear(double valor, std::int16_t decimales) override;
    void ColorFondo(double color) override { helper_.put(u"ColorFondo", OwnedVariant(color)); }
    void ColorFoco(double color) override { helper_.put(u"ColorFoco", OwnedVariant(color)); }
    void SalirCampo(TextBox& campo, std::string_view sFormato) override;
    void EntrarCampo(TextBox& campo, std::string_view sFormato) override;
    void Conexion(const ObjectRef<Connection>& conexion) override;
    void FiltrarTecla(TextBox& campo, std::int16_t& KeyAscii, bool bFecha) override;
    std::string Buscar(const Busqueda& busqueda) override;

  private:
    Reference<IDispatch> objectOf(TextBox& campo);

    Dispatch helper_;
    std::map<const TextBox*, Reference<TextBoxObject>> boxes_;
};

}  // namespace pxtarvo::windows
