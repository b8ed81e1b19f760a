#include "host/windows/automation_host_database.h"

#include "platform/values/conversion.h"
#include "platform/windows/data/ado_connection.h"
#include "platform/windows/system/user_locale.h"

namespace pxtarvo::windows {

namespace {

class FieldList : public HostFieldList {
  public:
    explicit FieldList(Dispatch fields) : fields_(std::move(fields)) {}

    void Agregar(std::string_view sNombre, std::int32_t nTipo, const Variant& vValor,
                 std::int32_t nModo) override {
        Bstr name(sNombre);
        OwnedVariant value(vValor);
        fields_.call(u"Agregar", OwnedVariant::reference(name), OwnedVariant::reference(nTipo),
                     OwnedVariant::reference(value), OwnedVariant::reference(nModo));
    }

  private:
    Dispatch fields_;
};

class Parameter : public HostParameter {
  public:
    explicit Parameter(Dispatch parameter) : parameter_(std::move(parameter)) {}
    Variant Valor() const override { return parameter_.value(u"Valor"); }

  private:
    Dispatch parameter_;
};

class Parameters : public HostParameters {
  public:
    explicit Parameters(Dispatch parameters) : parameters_(std::move(parameters)) {}
    ObjectRef<HostParameter> Item(const Variant& key) const override {
        return makeObject<Parameter>(parameters_.object(u"Item", OwnedVariant(key)));
    }

  private:
    Dispatch parameters_;
};

/// Nothing where the library answers with nothing.
template <class Adapter>
ObjectRef<Adapter> adapted(Dispatch object) {
    return object ? makeObject<Adapter>(std::move(object)) : ObjectRef<Adapter>();
}

}  // namespace

ObjectRef<HostParameters> AutomationHostDatabase::Parametros() const {
    return adapted<Parameters>(database_.object(u"Parametros"));
}

ObjectRef<HostFieldList> AutomationHostDatabase::Campos() {
    return adapted<FieldList>(database_.object(u"Campos"));
}

ObjectRef<Connection> AutomationHostDatabase::Conexion() {
    return adapted<AdoConnection>(database_.object(u"Conexion"));
}

OwnedVariant AutomationHostDatabase::write(std::u16string_view member, std::string& sMensaje) {
    Bstr message(sMensaje);
    OwnedVariant answer = database_.call(member, OwnedVariant::reference(message));
    sMensaje = message.utf8();
    return answer;
}

bool AutomationHostDatabase::accepted(const OwnedVariant& answer) {
    return toBoolean(toVariant(answer.raw()), userLocale());
}

}  // namespace pxtarvo::windows
