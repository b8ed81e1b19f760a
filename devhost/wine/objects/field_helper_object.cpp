#include "devhost/wine/objects/field_helper_object.h"

#include <array>

#include "devhost/wine/objects/ado_objects.h"
#include "platform/values/conversion.h"
#include "platform/window.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::devhost {

using windows::CallArguments;
using windows::Dispatch;
using windows::OwnedVariant;
using windows::Reference;

/// A text box of our own that stands for the plug-in's while the helper works on it: what the helper changes
/// in it is passed on at once.
class FieldHelperObject::Stand : public Window, public ControlObserver {
  public:
    explicit Stand(Platform& platform)
        : Window(platform, {.name = "Stand", .caption = ""}), box_(*this, {.name = "Campo", .rect = {}}) {}

    /// Works with `body` on the box that the plug-in handed over.
    template <class Body>
    void with(const Reference<IDispatch>& field, const Body& body) {
        const Dispatch given(field);
        observer(nullptr);
        box_.setText(given.text(u"Text"));
        given_ = given;
        observer(this);
        body(box_);
        observer(nullptr);
        given_ = Dispatch();
    }

    void controlChanged(Control&, ControlProperty property) override {
        switch (property) {
            case ControlProperty::Text:
                given_.put(u"Text", OwnedVariant(box_.text()));
                break;
            case ControlProperty::Colors:
                given_.put(u"BackColor", OwnedVariant(static_cast<double>(box_.backColor())));
                break;
            case ControlProperty::Selection:
                given_.put(u"SelStart", OwnedVariant(std::int32_t{box_.selectionStart()}));
                given_.put(u"SelLength", OwnedVariant(std::int32_t{box_.selectionLength()}));
                break;
            default:
                break;
        }
    }
    void focusMoved() override {}
    void windowChanged() override {}

  protected:
    void Form_Load() override {}

  private:
    TextBox box_;
    Dispatch given_;
};

namespace {

enum Member { Redondear, ColorFondo, ColorFoco, SalirCampo, EntrarCampo, Conexion, FiltrarTecla, Buscar };
constexpr std::array<std::u16string_view, 8> names{u"Redondear",    u"ColorFondo",  u"ColorFoco",
                                                   u"SalirCampo",   u"EntrarCampo", u"Conexion",
                                                   u"FiltrarTecla", u"Buscar"};
ObjectKind helperKind("FieldHelper", {names, -1});

}  // namespace

FieldHelperObject::FieldHelperObject(std::unique_ptr<DevFieldHelper> helper, Platform& platform)
    : CountedObject(helperKind), helper_(std::move(helper)), stand_(std::make_unique<Stand>(platform)) {}

FieldHelperObject::~FieldHelperObject() = default;

OwnedVariant FieldHelperObject::member(int place, const CallArguments& arguments) {
    switch (place) {
        case Redondear:
            expect(arguments, "Redondear", {VT_BYREF | VT_R8, VT_BYREF | VT_I2});
            return OwnedVariant(helper_->Redondear(toDouble(arguments.value(0), spanishLocale()),
                                                   static_cast<std::int16_t>(arguments.number(1))));
        case ColorFondo:
            expect(arguments, "ColorFondo", {VT_R8});
            helper_->ColorFondo(toDouble(arguments.value(0), spanishLocale()));
            break;
        case ColorFoco:
            expect(arguments, "ColorFoco", {VT_R8});
            helper_->ColorFoco(toDouble(arguments.value(0), spanishLocale()));
            break;
        case SalirCampo:
            expect(arguments, "SalirCampo", {VT_BYREF | VT_DISPATCH, VT_BYREF | VT_BSTR});
            stand_->with(arguments.object(0),
                         [&](TextBox& box) { helper_->SalirCampo(box, arguments.text(1)); });
            break;
        case EntrarCampo:
            expect(arguments, "EntrarCampo", {VT_DISPATCH, VT_BSTR});
            stand_->with(arguments.object(0),
                         [&](TextBox& box) { helper_->EntrarCampo(box, arguments.text(1)); });
            break;
        case Conexion:
            helper_->Conexion(connectionOf(arguments.object(0)));
            break;
        case FiltrarTecla: {
            expect(arguments, "FiltrarTecla", {VT_DISPATCH, VT_BYREF | VT_I2, VT_BOOL});
            auto KeyAscii = static_cast<std::int16_t>(arguments.number(1));
            const bool bFecha = toBoolean(arguments.value(2), spanishLocale());
            stand_->with(arguments.object(0),
                         [&](TextBox& box) { helper_->FiltrarTecla(box, KeyAscii, bFecha); });
            arguments.giveBack(1, KeyAscii);
            break;
        }
        case Buscar: {
            expect(arguments, "Buscar", {VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_I4, VT_I4, VT_I4});
            Busqueda busqueda;
            busqueda.sSQL = arguments.text(0);
            busqueda.sCampo = arguments.text(1);
            busqueda.sTitulo1 = arguments.text(2);
            busqueda.sTitulo2 = arguments.text(3);
            busqueda.sTituloVentana = arguments.text(4);
            busqueda.nAncho1 = arguments.number(5);
            busqueda.nAncho2 = arguments.number(6);
            busqueda.nOpcion = arguments.number(7);
            return OwnedVariant(helper_->Buscar(busqueda));
        }
    }
    return {};
}

}  // namespace pxtarvo::devhost
