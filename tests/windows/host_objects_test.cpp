#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "host/row_write.h"
#include "host/windows/automation_field_helper.h"
#include "host/windows/automation_host_database.h"
#include "platform/window.h"
#include "platform/windows/data/ado_connection.h"
#include "platform/windows/data/ado_recordset.h"
#include "platform/windows/screen/window_handles.h"
#include "platform/windows/windows_platform.h"
#include "tests/windows/recording_object.h"

namespace pxtarvo::windows {
namespace {

using tests::always;
using tests::Calls;
using tests::RecordingObject;
using Names = std::vector<std::u16string_view>;
using Answers = std::map<std::u16string_view, tests::Answer>;

const Names databaseNames = {u"Tabla",    u"Limpiar",  u"Condicion", u"Campos",  u"Conexion",
                             u"Ejecutar", u"Insertar", u"Borrar",    u"Usuario", u"Parametros"};

TEST(AutomationHostDatabase, CallsTheLibraryWithItsOwnArgumentTypes) {
    Calls calls;
    const Names fieldNames = {u"Agregar"};
    const auto fields = makeCounted<RecordingObject>(calls, fieldNames);
    const auto refuse = [](const CallArguments& arguments) {
        arguments.giveBack(0, "código repetido");
        return OwnedVariant(false);
    };
    const auto database = makeCounted<RecordingObject>(
        calls, databaseNames,
        Answers{{u"Campos", always(fields)}, {u"Insertar", refuse}, {u"Borrar", always(std::int32_t{1})}});
    const ObjectRef<HostDatabase> bd =
        makeObject<AutomationHostDatabase>(Reference<IDispatch>::share(database.get()));

    std::string sMensaje;
    EscrituraFila(bd, Art::tabla)
        .agregar(Art::Cal, std::int16_t{11})
        .agregar(Art::PVE, Null{})
        .actualizar(" W");
    EXPECT_FALSE(EscrituraFila(bd, Aat::tabla).agregar(Aat::Id, std::int32_t{7}).insertar(sMensaje));
    EXPECT_EQ(sMensaje, "código repetido");
    EXPECT_TRUE(EscrituraFila(bd, Aat::tabla, AbrirCon::Limpiar).borrar(" W", sMensaje));
    EXPECT_EQ(calls, (Calls{"put Tabla BSTR Art", "Limpiar I4 0", "Campos",
                            "Agregar BSTR* Art_Cal, I4* 1, VARIANT*(I2 11), I4* 2", "Campos",
                            "Agregar BSTR* ART_PVE, I4* 2, VARIANT*(NULL), I4* 2", "put Condicion BSTR  W",
                            "Ejecutar BSTR* ",  //
                            "put Tabla BSTR Aat", "Limpiar I4 0", "Campos",
                            "Agregar BSTR* Aat_Id, I4* 1, VARIANT*(I4 7), I4* 2", "put Condicion BSTR ",
                            "Insertar BSTR* ",  //
                            "Limpiar I4 0", "put Tabla BSTR Aat", "put Condicion BSTR  W",
                            "Borrar BSTR* código repetido"}));
    EXPECT_FALSE(bd->Usuario());
    EXPECT_EQ(tests::errorOf([&] { bd->Conexion(); }), 424);
}

TEST(Ado, AsksForEachFieldOnceWhileTheRecordsetIsOpen) {
    Calls calls;
    const Names fieldNames = {u"Value", u"Name"};
    const Names fieldsNames = {u"Item", u"Count"};
    const Names recordsetNames = {u"Open", u"Close", u"Fields", u"EOF", u"MoveNext", u"RecordCount"};
    std::int32_t row = 0;
    const auto field = makeCounted<RecordingObject>(
        calls, fieldNames, Answers{{u"Value", [&](const CallArguments&) { return OwnedVariant(++row); }}});
    const auto fields = makeCounted<RecordingObject>(calls, fieldsNames, Answers{{u"Item", always(field)}});
    const auto rows = makeCounted<RecordingObject>(
        calls, recordsetNames,
        Answers{
            {u"Fields", always(fields)}, {u"EOF", always(std::int16_t{-1})}, {u"RecordCount", always(2.0)}});
    const Names connectionNames = {u"Execute", u"Open", u"ConnectionString"};
    const auto connection =
        makeCounted<RecordingObject>(calls, connectionNames, Answers{{u"Execute", always(rows)}});
    const ObjectRef<Connection> cn = makeObject<AdoConnection>(tests::late(connection));

    cn->ConnectionString("Data Source=x");
    cn->Open("", "", adOptionUnspecified);
    const ObjectRef<Recordset> rs = cn->Execute("SELECT 1", adOptionUnspecified);
    EXPECT_EQ(rs->Fields(3), Variant(std::int32_t{1}));
    EXPECT_EQ(rs->Fields(3), Variant(std::int32_t{2}));
    EXPECT_EQ(rs->Fields("Art_Id"), Variant(std::int32_t{3}));
    EXPECT_TRUE(rs->Eof());
    EXPECT_EQ(rs->RecordCount(), 2);
    rs->Close();
    rs->Open("List", cn, adOpenDynamic, adLockOptimistic, adCmdText);
    EXPECT_EQ(rs->Fields(3), Variant(std::int32_t{4}));
    EXPECT_EQ(calls,
              (Calls{"put ConnectionString BSTR Data Source=x", "Open BSTR , BSTR , BSTR , I4 -1",
                     "Execute BSTR SELECT 1, ERROR, I4 -1", "Fields", "Item I4 3", "get Value", "get Value",
                     "Item BSTR Art_Id", "get Value", "get EOF", "get RecordCount", "Close",
                     "Open BSTR List, OBJ, I4 2, I4 3, I4 1", "Fields", "Item I4 3", "get Value"}));
}

class OneBoxWindow : public Window {
  public:
    explicit OneBoxWindow(Platform& platform) : Window(platform, {.name = "frmPrueba", .caption = ""}) {}
    TextBox Text1{*this, {.name = "Text1", .index = 3, .rect = {}, .maxLength = 8}};

  protected:
    void Form_Load() override {}
};

TEST(AutomationFieldHelper, HandsOverTextBoxesThatMayOutliveTheirWindow) {
    Calls calls;
    const Names names = {u"Redondear", u"ColorFondo",   u"SalirCampo", u"EntrarCampo",
                         u"Conexion",  u"FiltrarTecla", u"Buscar"};
    Reference<IDispatch> kept;
    bool sameBox = false;
    const auto enter = [&](const CallArguments& arguments) {
        kept = arguments.object(0);
        return OwnedVariant();
    };
    const auto filter = [&](const CallArguments& arguments) {
        sameBox = arguments.object(0).get() == kept.get();
        arguments.giveBack(1, std::int16_t{0});
        return OwnedVariant();
    };
    const auto helper = makeCounted<RecordingObject>(
        calls, names,
        Answers{{u"Redondear", always(31.07)}, {u"EntrarCampo", enter}, {u"FiltrarTecla", filter}});
    WindowsPlatform platform;
    auto window = std::make_unique<OneBoxWindow>(platform);
    TextBox& box = window->Text1;
    {
        AutomationFieldHelper ayuda(tests::late(helper));
        EXPECT_EQ(ayuda.Redondear(31.066, 2), 31.07);
        ayuda.ColorFondo(16777215);
        ayuda.Conexion(nullptr);
        ayuda.EntrarCampo(box, "");
        ayuda.SalirCampo(box, "dd/mm/yyyy");
        std::int16_t KeyAscii = 65;
        ayuda.FiltrarTecla(box, KeyAscii, true);
        EXPECT_EQ(KeyAscii, 0);
        EXPECT_TRUE(sameBox);
        EXPECT_EQ(ayuda.Buscar({.sSQL = "S",
                                .sCampo = "C",
                                .sTitulo1 = "1",
                                .sTitulo2 = "2",
                                .sTituloVentana = "T",
                                .nAncho1 = 600,
                                .nAncho2 = 6000}),
                  "");

        const Dispatch object(kept);
        object.put(u"text", OwnedVariant(std::string_view("añb€c")));
        object.put(u"BackColor", OwnedVariant(65535.0));
        object.put(u"ForeColor", OwnedVariant(0x12345678));
        object.put(u"SelStart", OwnedVariant(1));
        object.put(u"SelLength", OwnedVariant(3));
        EXPECT_EQ(object.text(u"SelText"), "ñb€");
        object.put(u"SelText", OwnedVariant(std::string_view("ÑÑ")));
        EXPECT_EQ(box.text(), "aÑÑc");
        EXPECT_EQ(object.number(u"SelStart"), 3);
        EXPECT_EQ(box.backColor(), 65535u);
        EXPECT_EQ(box.foreColor(), 0x345678u);
        EXPECT_EQ(object.number(u"MaxLength"), 8);
        EXPECT_EQ(object.number(u"hWnd"), 0);
        object.put(u"Enabled", OwnedVariant(false));
        EXPECT_FALSE(box.enabled());
        EXPECT_EQ(tests::errorOf([&] { object.put(u"hWnd", OwnedVariant(1)); }), 383);
    }
    window.reset();
    EXPECT_EQ(tests::errorOf([&] { Dispatch(kept).text(u"Text"); }), 91);
    EXPECT_EQ(calls, (Calls{"Redondear R8* 31,066, I2* 2", "put ColorFondo R8 16777215",
                            "putref Conexion OBJ Nothing", "EntrarCampo OBJ, BSTR ",
                            "SalirCampo OBJ*, BSTR* dd/mm/yyyy", "FiltrarTecla OBJ, I2* 65, BOOL Verdadero",
                            "Buscar BSTR S, BSTR C, BSTR 1, BSTR 2, BSTR T, I4 600, I4 6000, I4 0"}));
}

/// What the next timer runs, once.
std::function<void()> due;

void CALLBACK runDue(HWND, UINT, UINT_PTR, DWORD) {
    if (const auto once = std::exchange(due, {})) once();
}

/// Shows the window and runs `body` once it waits for input; then closes it.
void whileShown(Window& window, const std::function<void()>& body) {
    due = [&] {
        body();
        window.Unload();
    };
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, runDue);
    window.platform().desktop().showModal(window);
    KillTimer(nullptr, timer);
}

TEST(TextBoxObject, KnowsTheUsersMarkingAndShowsItsOwnAndItsColours) {
    WindowsPlatform platform;
    OneBoxWindow window(platform);
    window.Text1.setText("a\U0001F600bcd");
    const auto object = makeCounted<TextBoxObject>(window.Text1);
    const Dispatch box(Reference<IDispatch>::share(object.get()));
    whileShown(window, [&] {
        const HWND field = handleOf(window.Text1);
        ASSERT_EQ(box.number(u"hWnd"), HandleToLong(field));
        // As with Shift and the arrows: two characters, of which the first takes two units.
        SendMessageW(field, EM_SETSEL, 1, 4);
        SendMessageW(field, WM_KEYUP, VK_RIGHT, 0);
        EXPECT_EQ(box.number(u"SelStart"), 1);
        EXPECT_EQ(box.number(u"SelLength"), 2);
        EXPECT_EQ(box.text(u"SelText"), "\U0001F600b");

        box.put(u"SelText", OwnedVariant(std::string_view("ñ")));
        EXPECT_EQ(box.text(u"Text"), "añcd");
        box.put(u"SelStart", OwnedVariant(std::int32_t{2}));
        box.put(u"SelLength", OwnedVariant(std::int32_t{9}));
        DWORD start = 0, end = 0;
        SendMessageW(field, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
        EXPECT_EQ(start, 2u);
        EXPECT_EQ(end, 4u);

        box.put(u"ForeColor", OwnedVariant(0x0000FF00));
        box.put(u"BackColor", OwnedVariant(65535.0));
        const HDC dc = GetDC(field);
        SendMessageW(handleOf(window), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc),
                     reinterpret_cast<LPARAM>(field));
        EXPECT_EQ(GetTextColor(dc), 0x0000FF00u);
        EXPECT_EQ(GetBkColor(dc), 65535u);
        ReleaseDC(field, dc);
    });
    object->disconnect();
}

}  // namespace
}  // namespace pxtarvo::windows
