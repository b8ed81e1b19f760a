#include "devhost/wine/objects/host_objects.h"

#include <array>

#include "devhost/wine/objects/ado_objects.h"

namespace pxtarvo::devhost {

namespace {

using windows::CallArguments;
using windows::makeCounted;
using windows::OwnedVariant;

constexpr std::array<std::u16string_view, 1> parameterNames{u"Valor"};
constexpr std::array<std::u16string_view, 1> parametersNames{u"Item"};
constexpr std::array<std::u16string_view, 1> fieldListNames{u"Agregar"};

enum Member { Parametros, Usuario, Limpiar, Condicion, Campos, Tabla, Conexion, Borrar, Ejecutar, Insertar };
constexpr std::array<std::u16string_view, 10> databaseNames{
    u"Parametros", u"Usuario",  u"Limpiar", u"Condicion", u"Campos",
    u"Tabla",      u"Conexion", u"Borrar",  u"Ejecutar",  u"Insertar"};

ObjectKind parameterKind("HostParameter", {parameterNames, -1});
ObjectKind parametersKind("HostParameters", {parametersNames, 0});
ObjectKind fieldKind("HostField", {{}, -1});
ObjectKind fieldListKind("HostFieldList", {fieldListNames, -1});
ObjectKind databaseKind("HostDatabase", {databaseNames, -1});

class ParameterObject : public CountedObject {
  public:
    explicit ParameterObject(ObjectRef<HostParameter> parameter)
        : CountedObject(parameterKind), parameter_(std::move(parameter)) {}

  protected:
    OwnedVariant member(int, const CallArguments&) override { return parameter_->Valor(); }

  private:
    ObjectRef<HostParameter> parameter_;
};

class ParametersObject : public CountedObject {
  public:
    explicit ParametersObject(ObjectRef<HostParameters> parameters)
        : CountedObject(parametersKind), parameters_(std::move(parameters)) {}

  protected:
    OwnedVariant member(int, const CallArguments& arguments) override {
        return asValue(makeCounted<ParameterObject>(parameters_->Item(arguments.value(0))));
    }

  private:
    ObjectRef<HostParameters> parameters_;
};

/// What Agregar answers with.
class FieldObject : public CountedObject {
  public:
    FieldObject() : CountedObject(fieldKind) {}

  protected:
    OwnedVariant member(int, const CallArguments&) override { return {}; }
};

class FieldListObject : public CountedObject {
  public:
    explicit FieldListObject(ObjectRef<HostFieldList> fields)
        : CountedObject(fieldListKind), fields_(std::move(fields)) {}

  protected:
    OwnedVariant member(int, const CallArguments& arguments) override {
        expect(arguments, "Agregar",
               {VT_BYREF | VT_BSTR, VT_BYREF | VT_I4, VT_BYREF | VT_VARIANT, VT_BYREF | VT_I4});
        fields_->Agregar(arguments.text(0), arguments.number(1), arguments.value(2), arguments.number(3));
        return asValue(makeCounted<FieldObject>());
    }

  private:
    ObjectRef<HostFieldList> fields_;
};

}  // namespace

HostDatabaseObject::HostDatabaseObject(ObjectRef<HostDatabase> database)
    : CountedObject(databaseKind), database_(std::move(database)) {}

OwnedVariant HostDatabaseObject::fieldList() {
    const ObjectRef<HostFieldList> fields = database_->Campos();
    if (!fieldsObject_ || !(fields == fields_)) {
        fields_ = fields;
        fieldsObject_ = windows::makeDispatch<FieldListObject>(fields);
    }
    return OwnedVariant(fieldsObject_);
}

OwnedVariant HostDatabaseObject::member(int place, const CallArguments& arguments) {
    const auto write = [&](auto action, std::string_view name) {
        expect(arguments, name, {VT_BYREF | VT_BSTR});
        std::string sMensaje = arguments.text(0);
        const auto done = action(sMensaje);
        arguments.giveBack(0, sMensaje);
        return done;
    };
    switch (place) {
        case Parametros:
            return asValue(makeCounted<ParametersObject>(database_->Parametros()));
        case Usuario:
            return OwnedVariant(database_->Usuario());
        case Limpiar:
            expect(arguments, "Limpiar", {VT_I4});
            database_->Limpiar(arguments.number(0));
            return {};
        case Condicion:
            expect(arguments, "Condicion", {VT_BSTR});
            database_->Condicion(arguments.text(0));
            return {};
        case Campos:
            return fieldList();
        case Tabla:
            expect(arguments, "Tabla", {VT_BSTR});
            database_->Tabla(arguments.text(0));
            return {};
        case Conexion:
            return asValue(makeCounted<ConnectionObject>(database_->Conexion()));
        case Borrar:
            return OwnedVariant(write([&](std::string& text) { return database_->Borrar(text); }, "Borrar"));
        case Ejecutar:
            return OwnedVariant(write(
                [&](std::string& text) {
                    database_->Ejecutar(text);
                    return true;
                },
                "Ejecutar"));
        case Insertar:
            return OwnedVariant(
                write([&](std::string& text) { return database_->Insertar(text); }, "Insertar"));
        default:
            return {};
    }
}

}  // namespace pxtarvo::devhost
