// The keyboard in the real deletion window, whose search disables the button that started it, and what the
// window shows while it waits for the search.

#include <gmock/gmock.h>

#include "platform/values/text.h"
#include "tests/wine/actions.h"
#include "tests/wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

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

class DeletionKeyboard : public TwoWorlds {};

TEST_F(DeletionKeyboard, MovesOnFromTheSearch) {
    const Scenario scenario{
        .name = "keys",
        .script = {click("cmdBorrado"), type(3, "SAME"), click("cmdInicio"), lookAtFocus(), key(vkTab),
                   lookAtFocus(), key(vkReturn), lookAtFocus(), type(4, "s"),
                   Action{.deed = Deed::Look, .control = "Text1", .index = 4}, key(vkTab), lookAtFocus(),
                   key(vkEscape), lookAtFocus()}};
    const Outcome real = inTheDll(scenario, devhost::Hands::Keyboard);
    const Outcome twin = withoutScreen(scenario);
    EXPECT_THAT(real.violations, IsEmpty());
    EXPECT_THAT(real.seen,
                ElementsAre("cmdSalir", "dbgDatos", "Text1(3)", "Text1(4)=s", "Text1(1)", "cmdBorrado"));
    EXPECT_EQ(real.seen, twin.seen);
    EXPECT_EQ(real.record, twin.record);
}

/// The field is left, which yields, and the search begins at the same key: its own yield comes too early to
/// paint.
TEST_F(DeletionKeyboard, MnemonicsNeedAltOnlyWhereTextIsTyped) {
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

}  // namespace

}  // namespace pxtarvo::test
