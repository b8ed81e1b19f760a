// Whole sessions in the real windows: by real keys and the mouse of the display, and by a host that makes
// more than one instance. Afterwards every reference that the host gave out has come back.

#include <gmock/gmock.h>

#include <algorithm>

#include "devhost/wine/objects/automation_objects.h"
#include "devhost/wine/screen/resource_book.h"
#include "devhost/wine/screen/thread_windows.h"
#include "platform/values/text.h"
#include "tests/wine/actions.h"
#include "tests/wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// By keys and mouse; the record is what tells what happened.
class RealKeys : public TwoWorlds {
  protected:
    Outcome act(const devhost::UserScript& script) {
        const Outcome outcome = inTheDll({.name = "keys", .script = script}, devhost::Hands::Keyboard);
        EXPECT_THAT(outcome.violations, IsEmpty());
        EXPECT_EQ(outcome.error, "");
        EXPECT_THAT(linesWith(outcome.record, R"("unload","window":"frmImpTarifas")"), SizeIs(1));
        return outcome;
    }
    /// Also expects what the same script leaves without a screen.
    Outcome actAlike(const devhost::UserScript& script) {
        const Outcome outcome = act(script);
        const Outcome twin = withoutScreen({.name = "twin", .script = script});
        EXPECT_EQ(outcome.seen, twin.seen);
        EXPECT_EQ(outcome.record, twin.record);
        return outcome;
    }
};

TEST_F(RealKeys, TabWalksThePlannedOrderBothWays) {
    constexpr std::size_t enough = 40;
    devhost::UserScript forward{lookAtFocus()};
    while (forward.size() < enough) forward.insert(forward.end(), {key(vkTab), lookAtFocus()});
    const auto planned = withoutScreen({.name = "plan", .script = forward}).seen;
    const auto again = std::find(planned.begin() + 1, planned.end(), planned.front());
    ASSERT_NE(again, planned.end());
    const std::vector<std::string> stops(planned.begin(), again + 1);
    ASSERT_THAT(stops, Contains("XPButton3"));

    devhost::UserScript script(forward.begin(), forward.begin() + 2 * (again - planned.begin()) + 1);
    for (std::size_t stop = 1; stop < stops.size(); ++stop) {
        script.push_back({.deed = Deed::Press, .key = vkTab, .held = devhost::Held::Shift});
        script.push_back(lookAtFocus());
    }
    script.push_back(key(vkEscape));
    const Outcome outcome = act(script);
    std::vector<std::string> expected = stops;
    expected.insert(expected.end(), stops.rbegin() + 1, stops.rend());
    EXPECT_EQ(outcome.seen, expected);
    EXPECT_THAT(messagesOf(outcome.record), IsEmpty());
}

TEST_F(RealKeys, CodesAndTheirMessages) {
    // The Enter that closes a message must not move on from the field to which the message led back.
    const auto record = act({type(1, "999"), key(vkReturn), answer(MessageAnswer::Ok, vkReturn),
                             type(1, "24"), key(vkReturn)})
                            .record;
    EXPECT_THAT(messagesOf(record), ElementsAre("Codigo Proveedor no existe"));
    EXPECT_THAT(linesWith(record, "Pro_COD=999"), SizeIs(1));
    EXPECT_THAT(linesWith(record, "Pro_COD=24"), SizeIs(2));  // when the window opened, and now
}

TEST_F(RealKeys, SearchesInBothFieldsChosenAndNot) {
    const Outcome outcome = actAlike({click("Text1", 3),
                                      key(vkF1),
                                      choose(1),
                                      look(3),
                                      look(4),
                                      click("Text1", 3),
                                      key(vkF1),
                                      choose(-1),
                                      look(3),
                                      click("Text1", 1),
                                      key(vkF1),
                                      answer(MessageAnswer::No, vkReturn),
                                      choose(0),
                                      look(1),
                                      look(2),
                                      key(vkF1),
                                      answer(MessageAnswer::Yes, 0),
                                      choose(-1),
                                      look(1),
                                      look(2)});
    const auto searches = linesWith(outcome.record, "{\"call\":\"search\"");
    ASSERT_THAT(searches, SizeIs(4));
    EXPECT_THAT(searches[2], HasSubstr("Comercial"));
    EXPECT_THAT(searches[3], HasSubstr("Fiscal"));
    ASSERT_THAT(outcome.seen, SizeIs(7));
    EXPECT_THAT(outcome.seen[0], testing::Not("Text1(3)=SAME"));
    EXPECT_EQ(outcome.seen[2], outcome.seen[0]);  // not chosen: the code stays
    EXPECT_THAT(outcome.seen, Contains("Text1(1)="));
    EXPECT_THAT(outcome.seen, Contains("Text1(2)="));
}

TEST_F(RealKeys, ImportWithItsNoticesAndEscOnOneOfThem) {
    const auto whole = actAlike({click("XPButton1"), answer(MessageAnswer::Ok, vkReturn),
                                 answer(MessageAnswer::Ok, 0), answer(MessageAnswer::Ok, vkSpace)})
                           .record;
    EXPECT_THAT(messagesOf(whole), ElementsAre("stabla List", "stabla List", "Proceso finalizado con exito"));
    // The release of Esc on the last notice before the rows closes the window; the run goes on. How many rows
    // are through by then is the keyboard's matter.
    const devhost::UserScript escaping{click("XPButton1"), answer(MessageAnswer::Ok, vkReturn),
                                       answer(MessageAnswer::Ok, vkEscape)};
    std::vector<std::string> closed = act(escaping).record;
    EXPECT_THAT(closed.back(), HasSubstr("\"message\""));
    std::vector<std::string> twin = withoutScreen({.name = "twin", .script = escaping}).record;
    const auto unload = [](const std::string& line) { return line.starts_with("{\"call\":\"unload\""); };
    EXPECT_LT(std::ranges::find_if(closed, unload), std::ranges::find(closed, R"({"call":"commit"})"));
    std::erase_if(closed, unload);
    std::erase_if(twin, unload);
    EXPECT_EQ(closed, twin);
}

TEST_F(RealKeys, ClosedInTheMiddleOfARunThatGoesOnToItsEnd) {
    const Action ways[] = {
        key(vkEscape), {.deed = Deed::Press, .key = vkF4, .held = devhost::Held::Alt}, {.deed = Deed::Close}};
    for (const Action& way : ways) {
        SCOPED_TRACE(way.deed == Deed::Close ? "close box" : way.key == vkF4 ? "Alt+F4" : "Esc");
        const auto record = act({click("XPButton1"), inTheRun(way)}).record;
        const auto at = [&](std::string_view call) {
            return std::ranges::find_if(record,
                                        [=](const std::string& line) { return line.starts_with(call); });
        };
        EXPECT_LT(at("{\"call\":\"unload\""), at("{\"call\":\"commit\""));
        EXPECT_NE(at("{\"call\":\"commit\"}"), record.end());
        EXPECT_EQ(messagesOf(record).back(), "Proceso finalizado con exito");
        EXPECT_THAT(linesWith(record, "SELECT * FROM Art WHERE"), SizeIs(2000));
    }
}

TEST_F(RealKeys, SecondRunStartedInTheFirst) {
    // A short list: what the first run writes after the second one's end is no longer in one transaction.
    const devhost::UserScript script{type(0, "C:\\TARVO\\list-decimal-price.mdb"), click("XPButton1"),
                                     inTheRun(click("XPButton1"))};
    const auto record = act(script).record;
    EXPECT_EQ(messagesOf(record), messagesOf(withoutScreen({.name = "twin", .script = script}).record));
    EXPECT_THAT(messagesOf(record), Contains(HasSubstr("Registro 0. ")));
    EXPECT_THAT(messagesOf(record).back(), HasSubstr("-2147168242"));
}

TEST_F(RealKeys, FileDialogChosenAndCancelled) {
    using devhost::UserScript;
    // Esc on the dialog closes the window below it by its release, before the button is reached.
    const auto escaped = act({click("cmdFichero"), {.deed = Deed::File}, click("XPButton1")}).record;
    EXPECT_THAT(linesWith(escaped, "source.open"), IsEmpty());

    // The release of Enter moves on from the button, a click's does not; cancelling empties the field.
    const std::string path = "C:\\TARVO\\list-decimal-price.mdb";
    const std::pair<Action, std::vector<std::string>> ways[] = {
        {{.deed = Deed::File, .key = 0}, {"Text1(0)=", "cmdFichero"}},
        {{.deed = Deed::File, .answer = MessageAnswer::No}, {"Text1(0)=", "XPButton2"}},
        {{.deed = Deed::File, .text = path, .key = 0}, {"Text1(0)=" + path, "cmdFichero"}},
        {{.deed = Deed::File, .text = path}, {"Text1(0)=" + path, "XPButton2"}}};
    UserScript script;
    std::vector<std::string> expected;
    for (const auto& [way, seen] : ways) {
        script.insert(script.end(), {click("cmdFichero"), way, look(0), lookAtFocus()});
        expected.insert(expected.end(), seen.begin(), seen.end());
    }
    script.push_back(click("XPButton1"));
    const Outcome outcome = act(script);
    EXPECT_EQ(outcome.seen, expected);
    EXPECT_THAT(linesWith(outcome.record, "source.open"), ElementsAre(HasSubstr("list-decimal-price.mdb")));
}

TEST_F(RealKeys, QuestionWhoseDefaultIsNo) {
    const auto record = actAlike({click("XPButton3"), answer(MessageAnswer::Ok, vkReturn), click("XPButton3"),
                                  answer(MessageAnswer::Yes, vkReturn)})
                            .record;
    const auto questions = linesWith(record, "\"yesno\"");
    ASSERT_THAT(questions, SizeIs(2));
    EXPECT_THAT(questions[0], HasSubstr("\"default\":\"no\",\"answer\":\"no\""));
    EXPECT_THAT(questions[1], HasSubstr("\"answer\":\"yes\""));
}

TEST_F(RealKeys, BrandByF1AndEnterThroughTheCriteriaOfTheDeletion) {
    // To the description, the date, the check box, the chosen state and the search.
    devhost::UserScript script{click("cmdBorrado"), click("Text1", 3), key(vkF1), choose(1)};
    script.insert(script.end(), 5, key(vkReturn));
    script.insert(script.end(), {key(vkSpace), click("dbgDatos"), key(vkPageDown), key(vkEscape)});
    const auto record = act(script).record;
    EXPECT_THAT(linesWith(record, "{\"call\":\"search\""), SizeIs(1));
    EXPECT_THAT(linesWith(record, "AND Art_Marca = 2 ORDER BY"), SizeIs(1));
    EXPECT_THAT(linesWith(record, "\"unload\""),
                ElementsAre(HasSubstr("frmBorradoArticulos"), HasSubstr("frmImpTarifas")));
}

TEST_F(RealKeys, EscAfterTheSearchClosesOnlyTheDeletionWindow) {
    const auto record = act({click("cmdBorrado"),
                             click("cmdInicio"),
                             key(vkEscape),
                             click("cmdStock"),
                             click("XPButton1"),
                             {.deed = Deed::Message},
                             type(1, "24"),
                             key(vkEscape)})
                            .record;
    EXPECT_THAT(messagesOf(record), ElementsAre("Debe indicar el codigo de proveedor"));
    EXPECT_THAT(linesWith(record, "Pro_COD=24"), SizeIs(1)) << "Esc leaves no field";
    EXPECT_THAT(linesWith(record, "\"unload\""),
                ElementsAre(HasSubstr("frmBorradoArticulos"), HasSubstr("frmExistencias"),
                            HasSubstr("frmImpTarifas")));
}

/// The search disables the button that started it.
TEST_F(RealKeys, MoveOnFromTheSearch) {
    const Outcome outcome = actAlike({click("cmdBorrado"), type(3, "SAME"), click("cmdInicio"), lookAtFocus(),
                                      key(vkTab), lookAtFocus(), key(vkReturn), lookAtFocus(), type(4, "s"),
                                      look(4), key(vkTab), lookAtFocus(), key(vkEscape), lookAtFocus()});
    EXPECT_THAT(outcome.seen,
                ElementsAre("cmdSalir", "dbgDatos", "Text1(3)", "Text1(4)=s", "Text1(1)", "cmdBorrado"));
}

/// The labels of the plug-in's windows that are on the screen, nothing of them left to be painted.
std::vector<std::string> paintedLabels() {
    std::vector<std::string> texts;
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, "PXTarvoWindow", nullptr))) {
        HWND label = nullptr;
        while ((label = FindWindowExA(window, label, "Static", nullptr))) {
            char text[256]{};
            if (!IsWindowVisible(label) || GetUpdateRect(label, nullptr, FALSE)) continue;
            GetWindowTextA(label, text, sizeof(text));
            texts.push_back(fromWindows1252(text));
        }
    }
    return texts;
}

/// The field is left, which yields, and the search begins at the same key: its own yield comes too early to
/// paint.
TEST_F(RealKeys, MnemonicsNeedAltOnlyWhereTextIsTyped) {
    std::vector<std::string> shown;
    const auto record = [&](std::string_view line) {
        if (line.find("FROM Art WHERE") != std::string_view::npos) shown = paintedLabels();
    };
    devhost::WineHost host(
        plugIn(), optionsFor({.name = "mnemonics"}), record,
        {.script = {click("cmdBorrado"), click("Text1", 4), key('I', devhost::Held::Alt), lookAtFocus(),
                    key(vkTab), key('S'), lookAtFocus(), click("Check1"), key('S'), lookAtFocus()},
         .hands = devhost::Hands::Keyboard});
    host.run();
    EXPECT_THAT(host.screen().troubles(), IsEmpty());
    EXPECT_THAT(host.screen().seen(), ElementsAre("cmdSalir", "dbgDatos", "cmdBorrado"));
    EXPECT_THAT(shown, Contains("Buscando artículos"));
}

class Sessions : public TwoWorlds {
  protected:
    devhost::ScreenSession closing() { return {.script = {}, .hands = devhost::Hands::Posted}; }
};

TEST_F(Sessions, NewestInstanceServesTheWindows) {
    std::vector<std::string> first, second;
    const auto sink = [](std::vector<std::string>& lines) {
        return [&lines](std::string_view line) { lines.emplace_back(line); };
    };
    devhost::WineHost host(plugIn(), optionsFor({.name = "one"}), sink(first), closing());
    host.run();
    host.run();
    EXPECT_THAT(linesWith(first, "\"unload\""), SizeIs(2));
    const std::size_t before = first.size();

    // The window that the first instance opens works through the second one's context: none yet.
    const auto newer = windows::Dispatch::create("PXTarvo.PXTarvor");
    try {
        host.run();
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 91);
    }
    EXPECT_EQ(devhost::ScreenUser::windowsLeft(), 0);
    newer.putReference(u"MyBd", host.newContext());
    host.run();
    EXPECT_GT(first.size(), before);
}

/// The plug-in's topmost window on the screen.
HWND topWindow() {
    for (const HWND window : devhost::threadWindows()) {
        if (devhost::classOf(window) == devhost::plugInClass && IsWindowVisible(window)) return window;
    }
    return nullptr;
}

TEST_F(Sessions, AFailedSearchLeavesTheWindowDisabledAndThePointerBusy) {
    std::vector<bool> enabled, busy;
    const auto sink = [&](std::string_view line) {
        const HWND window = topWindow();
        if (line.find("{\"call\":\"unload\",\"window\":\"frmBorrado") == 0)
            enabled.push_back(IsWindowEnabled(window));
        if (line.find("Error '") == std::string_view::npos) return;
        // What the system says of the pointer over a disabled window, moved and clicked.
        for (const UINT message : {WM_MOUSEMOVE, WM_LBUTTONDOWN}) {
            SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
                         MAKELPARAM(HTERROR, message));
            busy.push_back(GetCursor() == LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_APPSTARTING)));
        }
    };
    devhost::ScreenSession session = closing();
    session.script = {click("cmdBorrado"), click("cmdInicio")};
    devhost::WineHost host(plugIn(), optionsFor({.name = "disabled"}), sink, session);
    host.connection()->Execute("UPDATE Exis SET Exis_IdArt = 2", adOptionUnspecified);
    host.run();
    EXPECT_THAT(enabled, ElementsAre(false));
    EXPECT_THAT(busy, ElementsAre(true, true));
}

/// As a host does that tears everything down; in the middle of a run the run goes on to its end.
TEST_F(Sessions, TheHostDestroysTheWindow) {
    const std::pair<devhost::UserScript, const char*> ways[] = {
        {{lookAtFocus()}, "nothing"},
        {{click("cmdBorrado"), lookAtFocus()}, "nothing"},
        {{click("XPButton1"), inTheRun(lookAtFocus())}, "Proceso finalizado con exito"}};
    for (const auto& [script, said] : ways) {
        std::vector<std::string> record;
        devhost::ScreenSession session = closing();
        session.script = script;
        session.begins = [](const devhost::Action& action) {
            if (action.deed == Deed::Look) DestroyWindow(topWindow());
        };
        devhost::WineHost host(
            plugIn(), optionsFor({.name = "destroyed"}),
            [&](std::string_view line) { record.emplace_back(line); }, session);
        host.run();
        const auto messages = messagesOf(record);
        EXPECT_EQ(messages.empty() ? "nothing" : messages.back(), said);
        EXPECT_EQ(devhost::ScreenUser::windowsLeft(), 0);
    }
}

TEST_F(Sessions, EverythingComesBack) {
    const devhost::ResourceBook& resources = devhost::ResourceBook::of(plugIn().module());
    devhost::ScreenSession session = closing();
    session.script = {click("Text1", 3), key(vkF1),           choose(1),
                      type(1, "999"),    key(vkTab),          answer(MessageAnswer::Ok, vkReturn),
                      type(1, "24"),     click("cmdFichero"), {.deed = Deed::File, .key = 0},
                      click("cmdStock"), key(vkEscape),       click("cmdBorrado"),
                      key(vkEscape),     click("Option1", 0), click("XPButton1")};
    {
        devhost::WineHost host(
            plugIn(), optionsFor({.name = "leaks"}), [](std::string_view) {}, session);
        host.run();
        EXPECT_THAT(host.screen().troubles(), IsEmpty());
        // The plug-in keeps the last context on purpose: one that it has not used yet.
        host.handOverNewContext();
    }
    for (const devhost::ObjectKind* kind : devhost::objectBook().kinds) {
        EXPECT_EQ(kind->alive, kind->name == "HostDatabase" ? 1 : 0) << kind->name;
    }
    EXPECT_THAT(resources.left(), IsEmpty());
    for (const char* function :
         {"CreateWindowExW", "CreateFontW", "CreateSolidBrush", "CreateCompatibleBitmap"}) {
        EXPECT_THAT(resources.taken(), Contains(testing::Pair(function, testing::Gt(0))));
    }
}

}  // namespace

}  // namespace pxtarvo::test
