#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "host/windows/automation_field_helper.h"
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

TEST(AutomationFieldHelper, HandsOverTextBoxesThatMayOutliveTheirWindow) {
    Calls calls;
    const Names names = {u"ColorFondo", u"ColorFoco", u"EntrarCampo", u"FiltrarTecla"};
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
        calls, names, Answers{{u"EntrarCampo", enter}, {u"FiltrarTecla", filter}});
    WindowsPlatform platform;
    auto window = std::make_unique<tests::OneBoxWindow>(platform);
    TextBox& box = window->Text1;
    {
        AutomationFieldHelper ayuda(tests::late(helper));
        ayuda.EntrarCampo(box, "");
        std::int16_t KeyAscii = 65;
        ayuda.FiltrarTecla(box, KeyAscii, true);
        EXPECT_EQ(KeyAscii, 0);
        EXPECT_TRUE(sameBox);

        const Dispatch object(kept);
        object.put(u"text", OwnedVariant(std::string_view("añb€c")));
        object.put(u"ForeColor", OwnedVariant(0x12345678));
        object.put(u"SelStart", OwnedVariant(1));
        object.put(u"SelLength", OwnedVariant(3));
        EXPECT_EQ(object.text(u"SelText"), "ñb€");
        object.put(u"SelText", OwnedVariant(std::string_view("ÑÑ")));
        EXPECT_EQ(box.text(), "aÑÑc");
        EXPECT_EQ(object.number(u"SelStart"), 3);
        EXPECT_EQ(box.foreColor(), 0x345678u);
        EXPECT_EQ(object.number(u"MaxLength"), 8);
        EXPECT_EQ(object.number(u"hWnd"), 0);
        object.put(u"Enabled", OwnedVariant(false));
        EXPECT_FALSE(box.enabled());
        EXPECT_EQ(tests::errorOf([&] { object.put(u"hWnd", OwnedVariant(1)); }), 383);
    }
    window.reset();
    EXPECT_EQ(tests::errorOf([&] { Dispatch(kept).text(u"Text"); }), 91);
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
    tests::OneBoxWindow window(platform);
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
