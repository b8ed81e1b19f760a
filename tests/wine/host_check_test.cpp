// The check of a host, held against the sample host, which keeps the contract, and against the development
// host with one point of the contract broken at a time.

#include <gmock/gmock.h>

#include <filesystem>

#include "devhost/host_stage.h"
#include "devhost/library/host_context.h"
#include "devhost/wine/objects/automation_objects.h"
#include "platform/values/text.h"
#include "platform/windows/automation/automation_errors.h"
#include "tests/wine/plain_program.h"
#include "tests/wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using windows::Bstr;
using windows::Dispatch;
using windows::OwnedVariant;
using windows::Reference;

/// One call as a host gets it.
struct HostCall {
    IDispatch& real;
    std::string member;  ///< "HostDatabase.Insertar"
    WORD kind;
    DISPPARAMS& given;
    VARIANT* answer;

    VARIANTARG& argument(UINT at) const { return given.rgvarg[given.cArgs - 1 - at]; }
};

/// What is wrong with a host; nothing where a part is not set.
struct Break {
    std::string name;
    std::string expected;  ///< the one line of the check, or the beginning of it
    std::string hidden{};  ///< this member is missing
    /// Answers in the host's stead where it gives a result.
    std::function<std::optional<HRESULT>(HostCall&)> instead{};
    /// After the host's own answer.
    std::function<void(HostCall&)> after{};
    devhost::CursorLocation cursor = devhost::CursorLocation::Client;
};

void PrintTo(const Break& broken, std::ostream* out) {
    *out << broken.name;
}

/// What the objects that a host hands out are called, by the member that they came from.
std::string kindOf(const std::string& member) {
    if (member == "HostDatabase.Conexion") return "Connection";
    if (member == "HostDatabase.Campos") return "HostFieldList";
    if (member == "Connection.Execute") return "Recordset";
    if (member == "Recordset.Fields") return "Fields";
    if (member == "Fields.Item") return "Field";
    return {};
}

/// Passes every call on to the host's object, but for what is broken.
class BrokenObject : public windows::Counted<IDispatch> {
  public:
    BrokenObject(std::string kind, Reference<IDispatch> real, const Break& broken)
        : kind_(std::move(kind)), real_(std::move(real)), broken_(broken) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch)) {
            return query(iid, object, {{IID_IDispatch, static_cast<IDispatch*>(this)}});
        }
        return real_->QueryInterface(iid, object);  // by which the host knows its own connection
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* identifiers) override {
        const std::string member = kind_ + "." + toUtf8(reinterpret_cast<const char16_t*>(names[0]));
        if (member == broken_.hidden) return DISP_E_UNKNOWNNAME;
        const HRESULT found = real_->GetIDsOfNames(iid, names, count, locale, identifiers);
        if (SUCCEEDED(found)) members_[identifiers[0]] = member;
        return found;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID identifier, REFIID iid, LCID locale, WORD kind, DISPPARAMS* given,
                                     VARIANT* answer, EXCEPINFO* record, UINT* wrong) override {
        HostCall call{*real_, members_[identifier], kind, *given, answer};
        if (broken_.instead) {
            if (const auto result = broken_.instead(call)) return *result;
        }
        const HRESULT result = real_->Invoke(identifier, iid, locale, kind, given, answer, record, wrong);
        if (FAILED(result)) return result;
        const std::string inner = kindOf(call.member);
        if (!inner.empty() && answer && V_VT(answer) == VT_DISPATCH && V_DISPATCH(answer)) {
            auto real = Reference<IDispatch>::adopt(V_DISPATCH(answer));
            V_DISPATCH(answer) =
                windows::makeDispatch<BrokenObject>(inner, std::move(real), broken_).detach();
        }
        if (broken_.after) broken_.after(call);
        return result;
    }

  private:
    std::string kind_;
    Reference<IDispatch> real_;
    const Break& broken_;
    std::map<DISPID, std::string> members_;
};

// --- Ways to break a host

std::function<std::optional<HRESULT>(HostCall&)> answers(std::string member, HRESULT result) {
    return [=](HostCall& call) { return call.member == member ? std::optional(result) : std::nullopt; };
}
/// As a member that declares this argument by value does.
std::function<std::optional<HRESULT>(HostCall&)> byValue(std::string member, UINT at) {
    return [=](HostCall& call) -> std::optional<HRESULT> {
        if (call.member != member || !(V_VT(&call.argument(at)) & VT_BYREF)) return {};
        return DISP_E_TYPEMISMATCH;
    };
}
std::string textOf(const VARIANT& value) {
    return windows::utf8Of(V_VT(&value) & VT_BYREF ? *V_BSTRREF(&value) : V_BSTR(&value));
}
/// Sends another statement where this text stands in one.
std::function<std::optional<HRESULT>(HostCall&)> rewritten(std::string text, std::string by) {
    return [=](HostCall& call) -> std::optional<HRESULT> {
        if (call.member != "Connection.Execute") return {};
        const std::string statement = textOf(call.argument(0));
        if (statement.find(text) != std::string::npos) {
            SysReAllocString(&V_BSTR(&call.argument(0)), Bstr(replaced(statement, text, by)).get());
        }
        return {};
    };
}
/// Writes another text into a column.
std::function<std::optional<HRESULT>(HostCall&)> column(std::string name, std::string text, std::string by) {
    return [=](HostCall& call) -> std::optional<HRESULT> {
        if (call.member != "HostFieldList.Agregar" || textOf(call.argument(0)) != name) return {};
        VARIANT& value = *V_VARIANTREF(&call.argument(2));
        if (V_VT(&value) == VT_BSTR && textOf(value) == text)
            SysReAllocString(&V_BSTR(&value), Bstr(by).get());
        return {};
    };
}
std::function<void(HostCall&)> answering(std::string member, std::optional<Variant> value) {
    return [=](HostCall& call) {
        if (call.member != member || !call.answer) return;
        VariantClear(call.answer);
        *call.answer = (value ? OwnedVariant(*value) : OwnedVariant(Reference<IDispatch>())).detach();
    };
}
/// As a member that is there for the other kinds of call only.
std::function<std::optional<HRESULT>(HostCall&)> notAs(std::string member, WORD kind) {
    return [=](HostCall& call) {
        return call.member == member && call.kind == kind ? std::optional(DISP_E_MEMBERNOTFOUND)
                                                          : std::nullopt;
    };
}

const std::string helper = "HostFields.FieldHelper";

std::vector<Break> breaks() {
    std::vector<Break> all{
        {.name = "ServerCursors",
         .expected = "Connection.CursorLocation: los cursores son del servidor",
         .cursor = devhost::CursorLocation::Server},
        {.name = "HelperNotThere", .expected = helper + ": no se puede crear, error 429", .hidden = helper}};
    const auto after = [&](const char* name, std::string expected, std::function<void(HostCall&)> what) {
        all.push_back({.name = name, .expected = std::move(expected), .after = std::move(what)});
    };
    const auto instead = [&](const char* name, std::string expected,
                             std::function<std::optional<HRESULT>(HostCall&)> what) {
        all.push_back({.name = name, .expected = std::move(expected), .instead = std::move(what)});
    };
    const std::string insertar = "HostDatabase.Insertar", conexion = "HostDatabase.Conexion";
    const std::string agregar = "HostFieldList.Agregar", limpiar = "HostDatabase.Limpiar";
    const std::string missing = ": falta el miembro, o no admite esta forma de llamada";

    after("RefusalAnsweredTrue", insertar + ": devuelve True cuando la base de datos rechaza la fila",
          answering(insertar, Variant(true)));
    after("NoAnswer", insertar + ": no devuelve un valor Boolean", answering(insertar, Variant()));
    after("UserIsText", "HostDatabase.Usuario: no es un número entero",
          answering("HostDatabase.Usuario", Variant("ANA")));
    after("ConnectionNothing", conexion + ": devuelve Nothing", answering(conexion, std::nullopt));
    after("ConnectionNoObject", conexion + ": no devuelve un objeto", answering(conexion, Variant()));
    after("ConnectionClosed", conexion + ": la conexión está cerrada",
          answering("Connection.State", Variant(std::int32_t{0})));
    after("HelperRoundsToEven", helper + ".Redondear: no redondea 31,066 a 31,07",
          answering(helper + ".Redondear", Variant(31.06)));
    after("HelperSwallowsDigits", helper + ".FiltrarTecla: no deja escribir cifras", [](HostCall& call) {
        if (call.member == helper + ".FiltrarTecla") *V_I2REF(&call.argument(1)) = 0;
    });
    after("MessageNotGivenBack",
          insertar + ": no deja el motivo del rechazo en sMensaje (texto por referencia)",
          [=](HostCall& call) {
              if (call.member == insertar)
                  SysReAllocString(V_BSTRREF(&call.argument(0)), Bstr("(sin tocar)").get());
          });
    after("TableForgotten", insertar + ": rechaza un artículo nuevo: ", [=](HostCall& call) {
        if (call.member != limpiar) return;
        Dispatch(Reference<IDispatch>::share(&call.real)).put(u"Tabla", OwnedVariant(std::string_view()));
    });

    instead("TransactionOpen", "Connection.BeginTrans: error -2147168237",
            answers("Connection.BeginTrans", static_cast<HRESULT>(ErrorNumber::TransactionAlreadyOpen)));
    instead("AccessProviderNotThere", "Microsoft.Jet.OLEDB.4.0: el proveedor de Access ",
            answers("Source.Open", static_cast<HRESULT>(0x800A0E7A)));
    instead("ColumnsKept", limpiar + ": quedan columnas de la escritura anterior", answers(limpiar, S_OK));
    instead("UpdateDoesNothing", "HostDatabase.Ejecutar: no cambia la fila",
            answers("HostDatabase.Ejecutar", S_OK));
    instead("MonthFirst", conexion + ": no lee las fechas con el día primero",
            rewritten("'03/04/2001 23:59:59'", "'04/03/2001 23:59:59'"));
    instead("CaseCounts", conexion + ": distingue mayúsculas", rewritten("'pxtarvo-prueba'", "'otra'"));
    instead("AnotherConnection", insertar + ": la fila insertada no se ve por Conexion",
            rewritten("Art_Cod = 'PXTARVO-PRUEBA'", "Art_Cod = 'otra'"));
    instead("IdentityNotFirst", "Art: la primera columna debe ser Art_Id y es ART_Cod",
            rewritten("SELECT * FROM Art WHERE Art_Cod = ''", "SELECT Art_Cod FROM Art WHERE Art_Cod = ''"));
    instead("WritesMonthFirst",
            agregar + ": el tipo 4 (fecha DD/MM/YYYY) no guarda 03/04/2001 como 3 de abril",
            column("Art_FechaEstado", "03/04/2001", "04/03/2001"));
    instead("TextChanged", agregar + ": el tipo 3 (texto) no guarda el texto tal cual: PRUEBA DALTA",
            column("ART_DES", "PRUEBA D'ALTA", "PRUEBA DALTA"));
    instead("ExpressionNotRun", agregar + ": el tipo 6 (expresión) no pone Getdate()",
            column("Art_FechaEstado", "Getdate()", "NULL"));
    instead("TableAsMethod", "HostDatabase.Tabla" + missing,
            notAs("HostDatabase.Tabla", DISPATCH_PROPERTYPUT));
    instead("HelperConnectionAsValue", helper + ".Conexion" + missing,
            notAs(helper + ".Conexion", DISPATCH_PROPERTYPUTREF));
    instead("OutsideTheTransaction", insertar + ": escribe fuera de la transacción de Conexion",
            [](HostCall& call) -> std::optional<HRESULT> {
                if (call.member != "Connection.RollbackTrans") return {};
                Dispatch(Reference<IDispatch>::share(&call.real)).run(u"CommitTrans");
                return S_OK;
            });
    const std::pair<std::string, std::string_view> members[] = {
        {"HostDatabase",
         "Parametros Usuario Limpiar Condicion Campos Tabla Conexion Borrar Ejecutar Insertar"},
        {"HostFieldList", "Agregar"},
        {"Connection", "Execute BeginTrans CommitTrans RollbackTrans"},
        {"Recordset", "Fields EOF RecordCount MoveFirst MoveNext Close Clone AbsolutePosition"},
        {"Fields", "Item Count"},
        {"Field", "Value Name"},
        {helper, "Redondear ColorFondo ColorFoco SalirCampo EntrarCampo Conexion FiltrarTecla Buscar"}};
    for (const auto& [kind, names] : members) {
        for (const std::string_view name : split(names, ' ')) {
            const std::string member = joined({kind, ".", name});
            all.push_back({.name = "Without_" + replaced(member, ".", "_"),
                           .expected = member + missing,
                           .hidden = member});
        }
    }
    const std::pair<std::string, std::vector<UINT>> references[] = {
        {agregar, {0, 1, 2, 3}},         {insertar, {0}},
        {"HostDatabase.Ejecutar", {0}},  {"HostDatabase.Borrar", {0}},
        {helper + ".Redondear", {0, 1}}, {helper + ".SalirCampo", {0, 1}},
        {helper + ".FiltrarTecla", {1}}};
    for (const auto& [member, places] : references) {
        for (const UINT at : places) {
            instead(("ByValue_" + replaced(member, ".", "_") + "_" + std::to_string(at)).c_str(),
                    member + ": no admite los tipos de sus argumentos: ", byValue(member, at));
        }
    }
    return all;
}

/// The check in this process, over the development host.
class HostCheck : public TwoWorlds {
  protected:
    using Check = LONG(WINAPI*)(IDispatch*, VARIANT*);

    HostCheck() {
        plugIn();  // enters the apartment
        std::filesystem::create_directories(driveC() + "/TARVO/STOCK");
        const Bstr file("Z:" + replaced(PXTARVO_CHECK_DLL, "/", "\\"));
        const HMODULE library = LoadLibraryW(file.get());
        check_ =
            reinterpret_cast<Check>(reinterpret_cast<void*>(GetProcAddress(library, "PXTarvoComprobar")));
    }

    /// The lines of the report, after it was held to the number of faults and to what is left in the
    /// database.
    std::vector<std::string> linesOf(const Break& broken) {
        devhost::DevHostOptions options = optionsFor({.name = broken.name});
        options.cursor = broken.cursor;
        devhost::HostParts parts(options, [] {});
        devhost::ClassObjects classes;
        offer(classes, *parts.stage, broken);
        const auto real = devhost::contextObject(makeObject<devhost::DevHostDatabase>(parts.state));
        const auto context = windows::makeDispatch<BrokenObject>("HostDatabase", real, broken);
        OwnedVariant report;
        const LONG faults = check_(context.get(), report.put());

        std::vector<std::string> lines;
        const std::string text = textOf(report.raw());
        LONG told = 0;
        for (const std::string_view line : split(text, '\n')) {
            if (line.starts_with("FALLO")) ++told;
            if (line.starts_with("FALLO") || line.starts_with("AVISO")) lines.emplace_back(line.substr(7));
            if (!lines.empty() && lines.back().ends_with('\r')) lines.back().pop_back();
        }
        EXPECT_EQ(faults, told);
        EXPECT_FALSE(parts.database->inTransaction());
        const auto left =
            parts.database->Execute("SELECT Art_Id FROM Art WHERE Art_Cod = 'PXTARVO-PRUEBA'", -1);
        EXPECT_TRUE(left->Eof());
        return lines;
    }

  private:
    static void offer(devhost::ClassObjects& classes, devhost::HostStage& stage, const Break& broken) {
        constexpr CLSID ado = {0x00000514, 0x0000, 0x0010, {0x80, 0, 0, 0xaa, 0, 0x6d, 0x2e, 0xa4}};
        constexpr CLSID field = {
            0x6a1b6d61, 0x54c1, 0x4c9b, {0x8e, 0x0b, 0x3d, 0x6a, 0x51, 0xb4, 0x0c, 0x77}};
        constexpr CLSID sheet = {
            0x6a1b6d60, 0x54c1, 0x4c9b, {0x8e, 0x0b, 0x3d, 0x6a, 0x51, 0xb4, 0x0c, 0x77}};
        classes.offer("ADODB.Connection", ado, [&] {
            return windows::makeDispatch<BrokenObject>(
                "Source", devhost::connectionObject(stage.platform.createConnection()), broken);
        });
        classes.offer("Excel.Application", sheet, []() -> Reference<IDispatch> { throw std::bad_alloc(); });
        const bool missing = broken.hidden == helper;
        classes.offer(helper, field, [&stage, &broken, missing]() -> Reference<IDispatch> {
            if (missing) throw RuntimeError(ErrorNumber::CannotCreateObject);
            return windows::makeDispatch<BrokenObject>(
                helper, devhost::fieldHelperObject(stage.makeFieldHelper(), stage.platform), broken);
        });
    }

    Check check_ = nullptr;
};

class BrokenHost : public HostCheck, public testing::WithParamInterface<Break> {};

TEST_P(BrokenHost, IsToldByItsLine) {
    const std::vector<std::string> lines = linesOf(GetParam());
    EXPECT_THAT(lines, ElementsAre(testing::StartsWith(GetParam().expected)));
}

INSTANTIATE_TEST_SUITE_P(Contract, BrokenHost, testing::ValuesIn(breaks()),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(HostCheck, FindsNothingInAHostThatKeepsTheContract) {
    EXPECT_THAT(linesOf({.name = "whole", .expected = {}}), IsEmpty());
}

TEST_F(HostCheck, TellsWhatTheMachineLacks) {
    std::filesystem::remove_all(driveC() + "/TARVO/STOCK");
    EXPECT_THAT(linesOf({.name = "folder", .expected = {}}),
                ElementsAre("C:\\TARVO\\STOCK: falta la carpeta"));
}

TEST_F(HostCheck, TellsWhichKindOfHelperIsRegistered) {
    const Break broken{.name = "helper", .expected = {}, .hidden = helper};
    linesOf(broken);  // writes the name
    CLSID type{};
    CLSIDFromProgID(Bstr(helper).get(), &type);
    char16_t text[39];
    StringFromGUID2(type, reinterpret_cast<LPOLESTR>(text), 39);
    const Bstr server("CLSID\\" + toUtf8(text) + "\\InprocServer32");
    HKEY narrow = nullptr;
    RegCreateKeyExW(HKEY_CLASSES_ROOT, server.get(), 0, nullptr, 0, KEY_ALL_ACCESS | KEY_WOW64_32KEY, nullptr,
                    &narrow, nullptr);
    const auto lines = linesOf(broken);
    RegDeleteKeyExW(HKEY_CLASSES_ROOT, server.get(), KEY_WOW64_32KEY, 0);
    RegCloseKey(narrow);
    const Bstr whole("CLSID\\" + toUtf8(text));
    RegDeleteKeyExW(HKEY_CLASSES_ROOT, whole.get(), KEY_WOW64_32KEY, 0);
    if (sizeof(void*) == 4) GTEST_SKIP() << "a prefix of 32 bits has one kind only";
    EXPECT_THAT(lines, ElementsAre(helper + ": está registrado solo para 32 bits y este programa es de 64"));
}

TEST_F(HostCheck, FindsNothingInTheSampleHost) {
    const StandInClasses classes(PXTARVO_ADO_PATH);
    const ProgramEnd end =
        runProgram(PXTARVO_SAMPLE_HOST, {"Provider=PXTarvo.Dealer;Data Source=" + newDealer(), "--check"});
    EXPECT_EQ(end.output, "Sin fallos.\r\n");
    EXPECT_EQ(end.status, 0u);
}

// The program, over a context that it creates by its name.

TEST_F(HostCheck, ProgramChecksAContextByItsName) {
    const StandInClasses classes(PXTARVO_ADO_PATH);
    const Bstr variable("PXTARVO_DEALER");
    SetEnvironmentVariableW(variable.get(), Bstr(newDealer()).get());
    const ProgramEnd whole = runProgram(PXTARVO_CHECK_PROGRAM, {"PXTarvoDevHost.Context"});
    EXPECT_EQ(whole.output, "Sin fallos.\r\n");
    EXPECT_EQ(whole.status, 0u);
    // Anything but a context lacks its members; each is one fault.
    const ProgramEnd other = runProgram(PXTARVO_CHECK_PROGRAM, {"ADODB.Connection"});
    EXPECT_THAT(other.output, testing::HasSubstr("FALLO  HostDatabase.Tabla: falta el miembro"));
    EXPECT_THAT(other.output, testing::HasSubstr("\r\n10 fallos.\r\n"));
    EXPECT_EQ(other.status, 10u);
    const ProgramEnd none = runProgram(PXTARVO_CHECK_PROGRAM, {"PXTarvo.NoExiste"});
    EXPECT_EQ(none.output, "PXTarvo.NoExiste: no está registrado\r\n");
    EXPECT_EQ(none.status, 255u);
}

}  // namespace

}  // namespace pxtarvo::test
