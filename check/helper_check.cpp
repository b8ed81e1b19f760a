#include "check/asked_object.h"
#include "check/host_check.h"
#include "check/registered_class.h"
#include "host/windows/automation_field_helper.h"
#include "platform/values/conversion.h"
#include "platform/values/locale.h"
#include "platform/window.h"
#include "platform/windows/windows_platform.h"

namespace pxtarvo::check {

namespace {

using windows::Bstr;
using windows::Dispatch;
using windows::OwnedVariant;
using windows::Reference;

class TrialWindow : public Window {
  public:
    explicit TrialWindow(Platform& platform) : Window(platform, {.name = "Comprobacion", .caption = ""}) {}
    TextBox field{*this, {.name = "Campo", .rect = {}}};

  protected:
    void Form_Load() override {}
};

/// The calls of a window, each told by itself.
void callHelper(const AskedObject& helper, const Reference<IDispatch>& box, const Dispatch& connection) {
    const auto ask = [&](std::u16string_view member, std::string_view arguments, const auto& body) {
        attempt([&] { helper.ask(member, arguments, body); });
    };
    helper.expectMembers({u"Redondear", u"ColorFondo", u"ColorFoco", u"SalirCampo", u"EntrarCampo",
                          u"Conexion", u"FiltrarTecla", u"Buscar"});
    ask(u"ColorFondo", "Double",
        [](const Dispatch& object) { object.put(u"ColorFondo", OwnedVariant(16777215.0)); });
    ask(u"ColorFoco", "Double",
        [](const Dispatch& object) { object.put(u"ColorFoco", OwnedVariant(65535.0)); });
    ask(u"Conexion", "objeto (propputref)",
        [&](const Dispatch& object) { object.putReference(u"Conexion", connection.object()); });
    ask(u"EntrarCampo", "objeto, texto", [&](const Dispatch& object) {
        object.call(u"EntrarCampo", OwnedVariant(box), OwnedVariant(std::string_view()));
    });
    for (const bool date : {false, true}) {
        ask(u"FiltrarTecla", "objeto, KeyAscii (Integer por referencia), Boolean",
            [&](const Dispatch& object) {
                std::int16_t key = '5';
                object.call(u"FiltrarTecla", OwnedVariant(box), OwnedVariant::reference(key),
                            OwnedVariant(date));
                if (key != '5') helper.fault(u"FiltrarTecla", "no deja escribir cifras");
            });
    }
    ask(u"SalirCampo", "objeto por referencia, texto por referencia", [&](const Dispatch& object) {
        Reference<IDispatch> field = box;
        Bstr format(std::string_view{});
        object.call(u"SalirCampo", OwnedVariant::reference(field), OwnedVariant::reference(format));
    });
    ask(u"Redondear", "Double por referencia, Integer por referencia", [&](const Dispatch& object) {
        double value = 31.066;
        std::int16_t decimals = 2;
        const OwnedVariant answer =
            object.call(u"Redondear", OwnedVariant::reference(value), OwnedVariant::reference(decimals));
        const double rounded = toDouble(windows::toVariant(answer.raw()), spanishLocale());
        if (rounded < 31.0699 || rounded > 31.0701) helper.fault(u"Redondear", "no redondea 31,066 a 31,07");
    });
}

}  // namespace

void checkHelper(const Dispatch& connection, Findings& findings) {
    const std::string name(windows::fieldHelperIdentifier);
    try {
        const Dispatch helper = created(name, findings);
        if (!helper) return;
        windows::WindowsPlatform platform;
        TrialWindow window(platform);
        const auto box = windows::makeCounted<windows::TextBoxObject>(window.field);
        callHelper(AskedObject(helper, name, findings), Reference<IDispatch>::share(box.get()), connection);
        box->disconnect();
    } catch (const RuntimeError& error) {
        findings.fault(name, described(error));
    }
}

}  // namespace pxtarvo::check
