// What the plug-in takes and gives back over many openings of its windows in one process.

#include <gmock/gmock.h>

#include "devhost/wine/screen/resource_book.h"
#include "devhost/wine/screen/thread_windows.h"
#include "tests/wine/actions.h"
#include "tests/wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

using ::testing::IsEmpty;

std::size_t bytesIn(HANDLE heap) {
    std::size_t bytes = 0;
    for (PROCESS_HEAP_ENTRY entry{}; HeapWalk(heap, &entry);) {
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    }
    return bytes;
}

/// Of the heap that the plug-in's C++ code allocates from.
std::size_t ownBytes() {
    const auto heap = reinterpret_cast<HANDLE(CDECL*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("msvcrt.dll"), "_get_heap_handle")));
    return bytesIn(heap());
}

/// What is there at one moment, nothing of this program's own memory among it.
struct Use {
    std::size_t own = ownBytes();
    std::size_t shared = bytesIn(GetProcessHeap());
    std::size_t windows = devhost::threadWindows().size();
    std::size_t resources = devhost::ResourceBook::of(TwoWorlds::plugIn().module()).left().size();
    std::size_t objects = 0;

    Use() {
        for (const devhost::ObjectKind* kind : devhost::objectBook().kinds) objects += kind->alive;
    }
};

constexpr int openings = 200;
constexpr int warm = 20;

/// Holds the uses at the last of the openings against those when everything had been opened a few times.
class Flat {
  public:
    /// `systemsOwn` are the bytes that Wine's own text fields and lists leave at each opening, 24 each.
    explicit Flat(std::size_t systemsOwn) : systemsOwn_(systemsOwn) {}
    ~Flat() {
        EXPECT_EQ(opened_, openings);
        EXPECT_EQ(last_.own, first_.own);
        EXPECT_EQ(last_.windows, first_.windows);
        EXPECT_EQ(last_.resources, first_.resources);
        EXPECT_EQ(last_.objects, first_.objects);
        EXPECT_LE(last_.shared, first_.shared + (openings - warm) * systemsOwn_);
    }
    void opened() {
        if (++opened_ == warm) first_ = {};
        if (opened_ == openings) last_ = {};
    }

  private:
    std::size_t systemsOwn_;
    int opened_ = 0;
    Use first_, last_;
};

class Openings : public TwoWorlds {};

TEST_F(Openings, LeaveNothingBehind) {
    Flat above(24 * 11);
    Flat below(24 * 6);
    devhost::ScreenSession session{.script = {}, .hands = devhost::Hands::Posted};
    for (int opening = 0; opening < openings; ++opening) {
        for (const char* button : {"cmdStock", "cmdBorrado"}) {
            session.script.push_back(click(button));
            session.script.push_back(key(vkEscape));
        }
    }
    session.begins = [&](const devhost::Action& action) {
        if (action.control == "cmdStock") above.opened();
    };
    devhost::WineHost host(
        plugIn(), optionsFor({.name = "openings"}), [](std::string_view) {}, session);
    host.run();
    for (int opening = 0; opening < openings; ++opening) {
        host.run();
        below.opened();
    }
    EXPECT_THAT(host.screen().troubles(), IsEmpty());
}

}  // namespace

}  // namespace pxtarvo::test
