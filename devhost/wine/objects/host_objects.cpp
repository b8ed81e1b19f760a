#include <variant>

#include "devhost/wine/objects/automation_objects.h"
#include "devhost/wine/objects/counted_object.h"

namespace pxtarvo::devhost {

namespace {

using windows::CallArguments;
using windows::Reference;

using Parameter = ObjectRef<HostParameter>;
using Parameters = ObjectRef<HostParameters>;
using FieldList = ObjectRef<HostFieldList>;

struct Context {
    ObjectRef<HostDatabase> database;
    /// One object for one list, made when it is first asked for.
    FieldList fields{};
    Reference<IDispatch> fieldsObject{};
};

KindOf<Parameter> parameterKind("HostParameter", u"", {{u"Valor", &HostParameter::Valor}});

KindOf<Parameters> parametersKind("HostParameters", u"Item",
                                  {{u"Item", [](Parameters& parameters, const CallArguments& given) {
                                        return made(parameterKind, parameters->Item(given.value(0)));
                                    }}});

/// What Agregar answers with.
KindOf<std::monostate> fieldKind("HostField", u"", {});

KindOf<FieldList> fieldListKind(
    "HostFieldList", u"",
    {{u"Agregar",
      [](FieldList& fields, const CallArguments& given) {
          fields->Agregar(given.text(0), given.number(1), given.value(2), given.number(3));
          return made(fieldKind, {});
      },
      {VT_BYREF | VT_BSTR, VT_BYREF | VT_I4, VT_BYREF | VT_VARIANT, VT_BYREF | VT_I4}}});

Reference<IDispatch> fieldList(Context& context) {
    const FieldList fields = context.database->Campos();
    if (!context.fieldsObject || !(fields == context.fields)) {
        context.fields = fields;
        context.fieldsObject = made(fieldListKind, fields);
    }
    return context.fieldsObject;
}

bool update(HostDatabase& database, std::string& sMensaje) {
    database.Ejecutar(sMensaje);
    return true;
}

/// A member that writes, and leaves its message with the caller.
template <class Write>
Member<Context> writing(std::u16string_view name, Write write) {
    const auto does = [write](Context& context, const CallArguments& given) {
        std::string sMensaje = given.text(0);
        const bool done = std::invoke(write, *context.database, sMensaje);
        given.giveBack(0, sMensaje);
        return done;
    };
    return {name, does, {VT_BYREF | VT_BSTR}};
}

KindOf<Context> contextKind(
    "HostDatabase", u"",
    {{u"Parametros", [](Context& context) { return made(parametersKind, context.database->Parametros()); }},
     {u"Usuario", [](Context& context) { return context.database->Usuario(); }},
     {u"Limpiar",
      [](Context& context, const CallArguments& given) { context.database->Limpiar(given.number(0)); },
      {VT_I4}},
     {u"Condicion",
      [](Context& context, const CallArguments& given) { context.database->Condicion(given.text(0)); },
      {VT_BSTR}},
     {u"Campos", fieldList},
     {u"Tabla",
      [](Context& context, const CallArguments& given) { context.database->Tabla(given.text(0)); },
      {VT_BSTR}},
     {u"Conexion", [](Context& context) { return connectionObject(context.database->Conexion()); }},
     writing(u"Borrar", &HostDatabase::Borrar),
     writing(u"Ejecutar", update),
     writing(u"Insertar", &HostDatabase::Insertar)});

}  // namespace

Reference<IDispatch> contextObject(ObjectRef<HostDatabase> database) {
    return made(contextKind, Context{std::move(database)});
}

}  // namespace pxtarvo::devhost
