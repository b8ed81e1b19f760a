// Whole sessions in the real windows: by real keys and the mouse of the display, and by a host that makes
// more than one instance. Afterwards every reference that the host gave out has come back.

#include <gmock/gmock.h>

#include "wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

Action key(std::int16_t key) {
    return {.deed = Deed::Press, .key = key};
}
Action click(std::string control, int index = notIndexed) {
    return {.deed = Deed::Click, .control = std::move(control), .index = index};
}
Action type(int index, std::string text) {
    return {.deed = Deed::Type, .control = "Text1", .index = index, .text = std::move(text)};
}
Action message(std::int16_t key, MessageAnswer answer = MessageAnswer::Ok) {
    return {.deed = Deed::Message, .key = key, .answer = answer};
}

/// By keys and mouse; the record is what tells what happened.
class RealKeys : public TwoWorlds {
  protected:
    std::vector<std::string> act(devhost::UserScript script) {
        const Outcome outcome =
            inTheDll({.name = "keys", .script = std::move(script)}, devhost::Hands::Keyboard);
        EXPECT_THAT(outcome.violations, IsEmpty());
        EXPECT_EQ(outcome.error, "");
        EXPECT_THAT(linesWith(outcome.record, "\"unload\""), SizeIs(1));
        return outcome.record;
    }
};

TEST_F(RealKeys, CodesAndTheirMessages) {
    // The Enter that closes a message must not move on from the field to which the message led back.
    const auto record = act({type(1, "999"), key(vkReturn), message(vkReturn), type(1, "24"), key(vkReturn)});
    EXPECT_THAT(messagesOf(record), ElementsAre("Codigo Proveedor no existe"));
    EXPECT_THAT(linesWith(record, "Pro_COD=999"), SizeIs(1));
    EXPECT_THAT(linesWith(record, "Pro_COD=24"), SizeIs(2));  // when the window opened, and now
}

TEST_F(RealKeys, SearchesInBothFields) {
    const auto record = act({click("Text1", 3),
                             key(vkF1),
                             {.deed = Deed::Search, .row = 1},
                             click("Text1", 3),
                             key(vkF1),
                             {.deed = Deed::Search, .row = -1},
                             click("Text1", 1),
                             key(vkF1),
                             message(vkReturn, MessageAnswer::No),
                             {.deed = Deed::Search, .row = 0}});
    const auto searches = linesWith(record, "{\"call\":\"search\"");
    ASSERT_THAT(searches, SizeIs(3));
    EXPECT_THAT(searches[0], testing::Not(HasSubstr("\"answer\":\"\"")));
    EXPECT_THAT(searches[1], HasSubstr("\"answer\":\"\""));
    EXPECT_THAT(searches[2], HasSubstr("Comercial"));
}

TEST_F(RealKeys, ImportWithItsNoticesAndEscOnOneOfThem) {
    const auto whole = act({click("XPButton1"), message(vkReturn), message(0), message(vkSpace)});
    EXPECT_THAT(messagesOf(whole), ElementsAre("stabla List", "stabla List", "Proceso finalizado con exito"));
    // The release of Esc on the last notice before the rows closes the window; the run goes on.
    const auto closed = act({click("XPButton1"), message(vkReturn), message(vkEscape)});
    EXPECT_EQ(messagesOf(closed).back(), "Proceso finalizado con exito");
    EXPECT_THAT(closed.back(), HasSubstr("\"message\""));
}

TEST_F(RealKeys, FileDialogChosenAndCancelled) {
    // Esc on the dialog closes the window below it by its release, before the button is reached.
    const auto record = act({click("cmdFichero"), {.deed = Deed::File}, click("XPButton1")});
    EXPECT_THAT(linesWith(record, "source.open"), IsEmpty());
    const auto chosen = act({click("cmdFichero"),
                             {.deed = Deed::File, .text = "C:\\TARVO\\list-decimal-price.mdb", .key = 0},
                             click("XPButton1")});
    EXPECT_THAT(linesWith(chosen, "source.open"), ElementsAre(HasSubstr("list-decimal-price.mdb")));
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
    newer.putReference(u"MyBd", host.newContext());
    host.run();
    EXPECT_GT(first.size(), before);
}

TEST_F(Sessions, EveryReferenceComesBack) {
    inTheDll({.name = "references"});
    for (const devhost::ObjectKind* kind : devhost::objectBook().kinds) {
        // The last context is kept on purpose, and with it its list of columns.
        const int kept = kind->name == "HostDatabase" ? 1 : 0;
        if (kind->name == "HostFieldList") continue;
        EXPECT_EQ(kind->alive, kept) << kind->name;
    }
}

}  // namespace

}  // namespace pxtarvo::test
