#include "host/windows/automation_field_helper.h"

#include "platform/values/conversion.h"
#include "platform/windows/data/ado_connection.h"
#include "platform/windows/system/user_locale.h"

namespace pxtarvo::windows {

ObjectRef<HostFieldHelper> AutomationFieldHelper::create() {
    return makeObject<AutomationFieldHelper>(Dispatch::create(fieldHelperIdentifier));
}

AutomationFieldHelper::~AutomationFieldHelper() {
    for (const auto& [campo, object] : boxes_) object->disconnect();
}

Reference<IDispatch> AutomationFieldHelper::objectOf(TextBox& campo) {
    Reference<TextBoxObject>& object = boxes_[&campo];
    if (!object) object = makeCounted<TextBoxObject>(campo);
    return Reference<IDispatch>::share(object.get());
}

double AutomationFieldHelper::Redondear(double valor, std::int16_t decimales) {
    const OwnedVariant rounded =
        helper_.call(u"Redondear", OwnedVariant::reference(valor), OwnedVariant::reference(decimales));
    return toDouble(toVariant(rounded.raw()), userLocale());
}

void AutomationFieldHelper::SalirCampo(TextBox& campo, std::string_view sFormato) {
    Reference<IDispatch> box = objectOf(campo);
    Bstr format(sFormato);
    helper_.call(u"SalirCampo", OwnedVariant::reference(box), OwnedVariant::reference(format));
}

void AutomationFieldHelper::EntrarCampo(TextBox& campo, std::string_view sFormato) {
    helper_.call(u"EntrarCampo", OwnedVariant(objectOf(campo)), OwnedVariant(sFormato));
}

void AutomationFieldHelper::Conexion(const ObjectRef<Connection>& conexion) {
    helper_.putReference(u"Conexion", AdoConnection::objectOf(conexion));
}

void AutomationFieldHelper::FiltrarTecla(TextBox& campo, std::int16_t& KeyAscii, bool bFecha) {
    helper_.call(u"FiltrarTecla", OwnedVariant(objectOf(campo)), OwnedVariant::reference(KeyAscii),
                 OwnedVariant(bFecha));
}

std::string AutomationFieldHelper::Buscar(const Busqueda& busqueda) {
    const OwnedVariant chosen =
        helper_.call(u"Buscar", OwnedVariant(busqueda.sSQL), OwnedVariant(busqueda.sCampo),
                     OwnedVariant(busqueda.sTitulo1), OwnedVariant(busqueda.sTitulo2),
                     OwnedVariant(busqueda.sTituloVentana), OwnedVariant(busqueda.nAncho1),
                     OwnedVariant(busqueda.nAncho2), OwnedVariant(busqueda.nOpcion));
    return toText(toVariant(chosen.raw()), userLocale());
}

}  // namespace pxtarvo::windows
