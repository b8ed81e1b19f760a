#include "devhost/wine/objects/automation_objects.h"
#include "devhost/wine/objects/counted_object.h"
#include "platform/values/conversion.h"
#include "platform/window.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::devhost {

namespace {

using windows::CallArguments;
using windows::Dispatch;
using windows::OwnedVariant;
using windows::Reference;

/// A text box of our own that stands for the plug-in's while the helper works on it: what the helper changes
/// in it is passed on at once.
class Stand : public Window, public ControlObserver {
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

struct Helper {
    std::unique_ptr<DevFieldHelper> own;
    std::unique_ptr<Stand> stand;
};

double numberIn(const CallArguments& given) {
    return toDouble(given.value(0), spanishLocale());
}

std::string search(Helper& helper, const CallArguments& given) {
    Busqueda busqueda;
    busqueda.sSQL = given.text(0);
    busqueda.sCampo = given.text(1);
    busqueda.sTitulo1 = given.text(2);
    busqueda.sTitulo2 = given.text(3);
    busqueda.sTituloVentana = given.text(4);
    busqueda.nAncho1 = given.number(5);
    busqueda.nAncho2 = given.number(6);
    busqueda.nOpcion = given.number(7);
    return helper.own->Buscar(busqueda);
}

KindOf<Helper> helperKind(
    "FieldHelper", u"",
    {{u"Redondear",
      [](Helper& helper, const CallArguments& given) {
          return helper.own->Redondear(numberIn(given), static_cast<std::int16_t>(given.number(1)));
      },
      {VT_BYREF | VT_R8, VT_BYREF | VT_I2}},
     {u"ColorFondo",
      [](Helper& helper, const CallArguments& given) { helper.own->ColorFondo(numberIn(given)); },
      {VT_R8}},
     {u"ColorFoco",
      [](Helper& helper, const CallArguments& given) { helper.own->ColorFoco(numberIn(given)); },
      {VT_R8}},
     {u"SalirCampo",
      [](Helper& helper, const CallArguments& given) {
          helper.stand->with(given.object(0),
                             [&](TextBox& box) { helper.own->SalirCampo(box, given.text(1)); });
      },
      {VT_BYREF | VT_DISPATCH, VT_BYREF | VT_BSTR}},
     {u"EntrarCampo",
      [](Helper& helper, const CallArguments& given) {
          helper.stand->with(given.object(0),
                             [&](TextBox& box) { helper.own->EntrarCampo(box, given.text(1)); });
      },
      {VT_DISPATCH, VT_BSTR}},
     {u"Conexion", [](Helper& helper,
                      const CallArguments& given) { helper.own->Conexion(connectionOf(given.object(0))); }},
     {u"FiltrarTecla",
      [](Helper& helper, const CallArguments& given) {
          auto KeyAscii = static_cast<std::int16_t>(given.number(1));
          const bool bFecha = toBoolean(given.value(2), spanishLocale());
          helper.stand->with(given.object(0),
                             [&](TextBox& box) { helper.own->FiltrarTecla(box, KeyAscii, bFecha); });
          given.giveBack(1, KeyAscii);
      },
      {VT_DISPATCH, VT_BYREF | VT_I2, VT_BOOL}},
     {u"Buscar", search, {VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_I4, VT_I4, VT_I4}}});

}  // namespace

Reference<IDispatch> fieldHelperObject(std::unique_ptr<DevFieldHelper> helper, Platform& platform) {
    return made(helperKind, Helper{std::move(helper), std::make_unique<Stand>(platform)});
}

}  // namespace pxtarvo::devhost
