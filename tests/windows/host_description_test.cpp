// The description of the host's interfaces against what the plug-in calls, and what it hands over: each
// member with its name, kind and types, and none on one side only.

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>

#include "host/row_write.h"
#include "host/windows/automation_field_helper.h"
#include "host/windows/automation_host_database.h"
#include "platform/values/text.h"
#include "platform/window.h"
#include "platform/windows/automation/automation_errors.h"
#include "platform/windows/data/ado_connection.h"
#include "platform/windows/windows_platform.h"
#include "tests/windows/recording_object.h"

namespace pxtarvo::windows {
namespace {

/// One interface of the type library.
class Interface {
  public:
    explicit Interface(std::u16string_view name) {
        Reference<ITypeLib> library;
        const Bstr file(PXTARVO_HOST_TYPE_LIBRARY);
        check(LoadTypeLibEx(file.get(), REGKIND_NONE, library.put()));
        std::u16string wanted(name);
        MEMBERID member = 0;
        USHORT found = 1;
        check(library->FindName(reinterpret_cast<OLECHAR*>(wanted.data()), 0, info.put(), &member, &found));
        EXPECT_EQ(found, 1);
        TYPEATTR* attributes = nullptr;
        check(info->GetTypeAttr(&attributes));
        functions = attributes->cFuncs;
        variables = attributes->cVars;
        info->ReleaseTypeAttr(attributes);
    }

    std::string nameOf(MEMBERID member) const {
        Bstr name;
        check(info->GetDocumentation(member, name.address(), nullptr, nullptr, nullptr));
        return name.utf8();
    }
    template <class Body>
    void eachFunction(const Body& body) const {
        for (UINT at = 0; at < functions; ++at) {
            FUNCDESC* function = nullptr;
            check(info->GetFuncDesc(at, &function));
            // What every dispinterface has of IDispatch is not the host's.
            if (!(function->wFuncFlags & FUNCFLAG_FRESTRICTED)) body(*function);
            info->ReleaseFuncDesc(function);
        }
    }
    template <class Body>
    void eachVariable(const Body& body) const {
        for (UINT at = 0; at < variables; ++at) {
            VARDESC* variable = nullptr;
            check(info->GetVarDesc(at, &variable));
            body(*variable);
            info->ReleaseVarDesc(variable);
        }
    }

    Reference<ITypeInfo> info;
    UINT functions = 0;
    UINT variables = 0;
};

VARTYPE typeOf(const TYPEDESC& described) {
    if (described.vt != VT_PTR) return described.vt;
    return VT_BYREF | typeOf(*described.lptdesc);
}

using Answers = std::map<std::string, std::function<OwnedVariant()>>;

/// A host's object that answers as its description says, and fails the test where it is called otherwise.
class DescribedObject : public Counted<IDispatch> {
  public:
    DescribedObject(std::u16string_view name, Answers answers) : type_(name), answers_(std::move(answers)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return query(iid, object, {{IID_IDispatch, static_cast<IDispatch*>(this)}});
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** answer) override {
        *answer = Reference<ITypeInfo>(type_.info).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                            DISPID* identifiers) override {
        return type_.info->GetIDsOfNames(names, count, identifiers);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID identifier, REFIID, LCID, WORD kind, DISPPARAMS* given,
                                     VARIANT* answer, EXCEPINFO*, UINT*) override {
        const std::string name = type_.nameOf(identifier);
        bool described = false;
        type_.eachFunction([&](const FUNCDESC& function) {
            if (function.memid != identifier) return;
            described = true;
            called_.insert(name);
            EXPECT_TRUE(kind & function.invkind) << name;
            EXPECT_EQ(given->cArgs, static_cast<UINT>(function.cParams)) << name;
            for (UINT at = 0; at < given->cArgs && at < static_cast<UINT>(function.cParams); ++at) {
                const VARTYPE type = typeOf(function.lprgelemdescParam[at].tdesc);
                // A Variant by value is whatever comes.
                if (type == VT_VARIANT) continue;
                EXPECT_EQ(V_VT(&given->rgvarg[given->cArgs - 1 - at]), type) << name << ", argument " << at;
            }
        });
        EXPECT_TRUE(described) << name;
        const auto found = answers_.find(name);
        if (answer && found != answers_.end()) *answer = found->second().detach();
        return S_OK;
    }

    /// Every member that is described was called.
    void expectAllCalled() const {
        type_.eachFunction([&](const FUNCDESC& function) {
            EXPECT_TRUE(called_.contains(type_.nameOf(function.memid))) << type_.nameOf(function.memid);
        });
        EXPECT_EQ(type_.variables, 0u);
    }

  private:
    Interface type_;
    Answers answers_;
    std::set<std::string> called_;
};

Reference<DescribedObject> described(std::u16string_view name, Answers answers = {}) {
    return makeCounted<DescribedObject>(name, std::move(answers));
}
std::function<OwnedVariant()> answering(const Reference<DescribedObject>& object) {
    return [object] { return OwnedVariant(Reference<IDispatch>::share(object.get())); };
}

TEST(HostDescription, HoldsWhatIsCalledOfTheContextAndNoMore) {
    const auto fields = described(u"HostFieldList");
    const auto parameter =
        described(u"HostParameter", {{"Valor", [] { return OwnedVariant(std::int32_t{0}); }}});
    const auto parameters = described(u"HostParameters", {{"Item", answering(parameter)}});
    const auto database =
        described(u"HostDatabase", {{"Campos", answering(fields)},
                                    {"Parametros", answering(parameters)},
                                    {"Conexion", answering(parameter)},
                                    {"Usuario", [] { return OwnedVariant(std::int32_t{7}); }},
                                    {"Insertar", [] { return OwnedVariant(std::int16_t{-1}); }},
                                    {"Borrar", [] { return OwnedVariant(true); }}});
    const ObjectRef<HostDatabase> bd =
        makeObject<AutomationHostDatabase>(Reference<IDispatch>::share(database.get()));

    std::string sMensaje;
    EscrituraFila(bd, Art::tabla).agregarFechaServidor(Art::FechaEstado).actualizar(" W");
    EXPECT_TRUE(EscrituraFila(bd, Exis::tabla).agregar(Exis::Kill, std::int16_t{0}).insertar(sMensaje));
    EXPECT_TRUE(EscrituraFila(bd, Art::tabla).borrar(" W", sMensaje));
    EXPECT_TRUE(bd->Conexion());
    const ObjectRef<HostDatabase> bare =
        makeObject<AutomationHostDatabase>(Reference<IDispatch>::share(described(u"HostDatabase").get()));
    EXPECT_FALSE(bare->Usuario());
    EXPECT_EQ(tests::errorOf([&] { bare->Conexion(); }), 424);
    EXPECT_EQ(bd->Usuario(), 7);
    bd->Parametros()->Item("PAR_ORCONTANOM")->Valor();
    for (const auto& object : {fields, parameter, parameters, database}) object->expectAllCalled();
}

TEST(HostDescription, HoldsWhatIsCalledOfTheHelperAndNoMore) {
    const auto helper =
        described(u"HostFieldHelper", {{"Redondear", [] { return OwnedVariant(1.5); }},
                                       {"Buscar", [] { return OwnedVariant(std::string_view("x")); }}});
    WindowsPlatform platform;
    tests::OneBoxWindow window(platform);
    AutomationFieldHelper ayuda(Dispatch(Reference<IDispatch>::share(helper.get())));
    EXPECT_EQ(ayuda.Redondear(1.49, 1), 1.5);
    ayuda.ColorFondo(16777215);
    ayuda.ColorFoco(65535);
    ayuda.Conexion({});
    ayuda.EntrarCampo(window.Text1, "");
    std::int16_t key = '5';
    ayuda.FiltrarTecla(window.Text1, key, true);
    ayuda.SalirCampo(window.Text1, "dd/mm/yyyy");
    EXPECT_EQ(ayuda.Buscar({}), "x");
    helper->expectAllCalled();
}

TEST(HostDescription, HoldsWhatTheTextBoxHasAndNoMore) {
    WindowsPlatform platform;
    tests::OneBoxWindow window(platform);
    const auto object = makeCounted<TextBoxObject>(window.Text1);
    const Dispatch box(Reference<IDispatch>::share(object.get()));
    const Interface type(u"TextBox");
    std::set<DISPID> places;
    const auto meet = [&](MEMBERID member) {
        const std::string name = type.nameOf(member);
        SCOPED_TRACE(name);
        Bstr wide(name);
        LPOLESTR text = wide.get();
        DISPID place = DISPID_UNKNOWN;
        EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &text, 1, 0, &place), S_OK);
        // A caller that was compiled against the description uses its numbers.
        EXPECT_EQ(member, member == DISPID_VALUE ? DISPID_VALUE : place);
        places.insert(place);
        return toUtf16(name);
    };
    type.eachVariable([&](const VARDESC& variable) {
        const std::u16string name = meet(variable.memid);
        SCOPED_TRACE(type.nameOf(variable.memid));
        if (name == u"hWnd") return;  // the window is not shown
        const OwnedVariant value = box.get(name);
        EXPECT_EQ(V_VT(&value.raw()), variable.elemdescVar.tdesc.vt);
        bool readOnly = false;
        try {
            box.put(name, value);
        } catch (const RuntimeError& error) {
            readOnly = error.number() == 383;
        }
        EXPECT_EQ(readOnly, (variable.wVarFlags & VARFLAG_FREADONLY) != 0);
    });
    type.eachFunction([&](const FUNCDESC& function) { meet(function.memid); });
    DISPPARAMS none{};
    const auto beyond = static_cast<DISPID>(places.size()) + 1;
    EXPECT_EQ(*places.rbegin(), beyond - 1);
    EXPECT_EQ(object->Invoke(beyond, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
}

}  // namespace
}  // namespace pxtarvo::windows
