// Memory that runs out in the middle of a run, at every place where the run asks for it.

#include <gmock/gmock.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <stdexcept>

#include "deletion/frm_borrado_articulos.h"
#include "devhost/dealer/host_file.h"
#include "devhost/dev_host.h"
#include "import/frm_imp_tarifas.h"
#include "platform/portable/clocks.h"
#include "tests/common/database_state.h"
#include "tests/common/memory_list.h"
#include "tests/common/temporary_folder.h"

// The program's memory, told to run out: operator new of the whole program is replaced.

namespace {

struct Plan {
    bool armed = false;
    long seen = 0;
    long first = 0;
    long count = 0;
} plan;

void* allocated(std::size_t size) noexcept {
    if (plan.armed && ++plan.seen >= plan.first && plan.seen < plan.first + plan.count) return nullptr;
    return std::malloc(size > 0 ? size : 1);
}

void* required(std::size_t size) {
    if (void* const memory = allocated(size)) return memory;
    throw std::bad_alloc();
}

}  // namespace

// All of them, so that no sanitizer's own stands beside them.
void* operator new(std::size_t size) {
    return required(size);
}
void* operator new[](std::size_t size) {
    return required(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace pxtarvo::tests {

namespace {

/// While it lives, the allocations from the `first` one on (1-based, counted from its making) fail, `count`
/// of them in a row. One at a time.
class FailingMemory {
  public:
    FailingMemory(long first, long count) { plan = {true, 0, first, count}; }
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
    ~FailingMemory() { plan.armed = false; }
};

constexpr const char* report = "Error '7' en tiempo de ejecución:\r\n\r\nMemoria insuficiente";
constexpr long never = 1'000'000'000;

struct Case {
    const char* name;
    /// Given each window that is shown: opens the next one, or makes this one ready and answers with the
    /// button whose click is the run.
    Control* (*prepare)(portable::SimulatedDesktop&, Window&);
    const char* success;
    const char* stopped;  ///< begins the message of a run that its trap ended
    bool closes;          ///< then
};

void PrintTo(const Case& one, std::ostream* out) {
    *out << one.name;
}

Control* yearlyList(portable::SimulatedDesktop& desktop, Window& shown) {
    auto& window = dynamic_cast<frmImpTarifas&>(shown);
    desktop.choose(window.Combo1, "2008");
    return &window.XPButton1;
}

Control* codeCorrection(portable::SimulatedDesktop&, Window& shown) {
    return &dynamic_cast<frmImpTarifas&>(shown).XPButton3;
}

Control* deletion(portable::SimulatedDesktop& desktop, Window& shown) {
    if (auto* const import = dynamic_cast<frmImpTarifas*>(&shown)) {
        desktop.click(import->cmdBorrado);
        return nullptr;
    }
    auto& window = dynamic_cast<frmBorradoArticulos&>(shown);
    desktop.click(window.Option2);
    desktop.click(window.cmdInicio);
    return &window.cmdBorrar;
}

class MemoryRunsOut : public ::testing::TestWithParam<Case> {
  protected:
    /// A dealer with one known article for the list of two, and one whose stock moves to another.
    void newDealer() {
        host.reset();
        folder.emplace();
        devhost::DevHostOptions options;
        options.database = folder->file("dealer.db");
        options.rotateContexts = true;
        options.clock = std::make_shared<portable::FixedClock>(CalendarTime{2012, 7, 25, 10, 30, 0});
        // Long enough for each copy of a text to take memory.
        options.makeSource =
            test::memorySource({test::listRow("KNOWN-ARTICLE-OF-THE-LIST", 2.0, "C", std::string(40, 'D')),
                                test::listRow("NEW-ARTICLE-OF-THE-LIST", 3.0, "X", std::string(40, 'E'))});
        devhost::createHostFile(options.database, options.clock, false);
        host.emplace(options);
        // The files need not outlive the machine.
        host->database()->runNative("PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY");
        for (const char* row :
             {"INSERT INTO Pro (Pro_ID,Pro_COD,Pro_NOM,Pro_TIPDOC) VALUES (4,24,'RECAMBIOS',0)",
              "INSERT INTO Marcas (Marca_ID,Marca_Des,Marca_CodAbrev) VALUES (1,'Same','SAME')",
              "INSERT INTO Art (ART_Cod,ART_PVE,Art_Mar) VALUES ('KNOWN-ARTICLE-OF-THE-LIST',1,1)",
              "INSERT INTO Art (ART_Cod,ART_PVE,Art_Mar) VALUES ('77-WITHOUT-LEADING-ZERO',1,1)",
              "INSERT INTO Art (ART_Cod,ART_PVE,Art_Mar) VALUES ('077-WITHOUT-LEADING-ZERO',1,1)",
              "INSERT INTO Art (ART_Cod,ART_PVE,Art_Estado) VALUES ('RETIRED-ARTICLE-WITH-STOCK',1,1)",
              "INSERT INTO ArtPro (ARP_Ida,ARP_Idp) VALUES (2,4)",
              "INSERT INTO Exis (Exis_IdArt,Exis_Cantidad) VALUES (2,5),(4,1)"}) {
            host->connection()->Execute(row, adExecuteNoRecords);
        }
        before = tables();
    }

    Tables tables() const { return tablesOf(*host->connection()); }

    /// Opens the window and presses the button, the memory failing as told; gives back the last message.
    std::string run(long first, long count) {
        closed = false;
        host->user().yesNo = MessageAnswer::Yes;
        host->user().onWindowShown = [&](Window& window) {
            Control* const button = GetParam().prepare(host->desktop(), window);
            if (!button) return;
            {
                const FailingMemory failing(first, count);
                host->desktop().click(*button);
            }
            closed = window.unloaded();
        };
        const std::size_t shown = host->user().messages().size();
        host->run();
        const auto& messages = host->user().messages();
        return messages.size() > shown ? messages.back().message.text : "";
    }

    std::optional<TemporaryFolder> folder;
    std::optional<devhost::DevHost> host;
    Tables before;
    bool closed = false;
};

TEST_P(MemoryRunsOut, EndsTheTransactionAndSaysSo) {
    newDealer();
    ASSERT_EQ(run(never, 0), GetParam().success);
    const long allocations = plan.seen;
    const Tables after = tables();
    ASSERT_TRUE(before != after);
    newDealer();
    const std::pair<long, long> series[] = {{1, 1}, {2, 1}, {40, 7}};  // failures in a row, step
    for (const auto& [count, step] : series) {
        for (long first = 1; first <= allocations; first += step) {
            SCOPED_TRACE(testing::Message() << count << " from " << first << " of " << allocations);
            std::string said;
            ASSERT_NO_THROW(said = run(first, count));
            ASSERT_FALSE(transactionOpen(*host->connection())) << said;
            if (tables() == after) {
                ASSERT_EQ(said, GetParam().success);
                newDealer();
                continue;
            }
            ASSERT_TRUE(tables() == before);
            if (said == report) {
                ASSERT_FALSE(closed);
            } else {
                ASSERT_TRUE(said.starts_with(GetParam().stopped) && said.ends_with("Memoria insuficiente"))
                    << said;
                ASSERT_EQ(closed, GetParam().closes);
            }
        }
    }
    EXPECT_EQ(run(never, 0), GetParam().success);
    EXPECT_TRUE(tables() == after);
}

TEST_P(MemoryRunsOut, AnyOtherExceptionIsAnErrorToo) {
    newDealer();
    host->state().beforeWrite = [](const devhost::HostWrite&) -> std::optional<std::string> {
        throw std::length_error("too long");
    };
    const std::string said = run(never, 0);
    EXPECT_TRUE(said.starts_with(GetParam().stopped) && said.ends_with("too long")) << said;
    EXPECT_FALSE(transactionOpen(*host->connection()));
    EXPECT_TRUE(tables() == before);
}

const Case cases[] = {
    {"YearlyList", yearlyList, "Proceso finalizado con exito", "Registro ", true},
    {"CodeCorrection", codeCorrection, "proceso concluido", "", false},
    {"Deletion", deletion, "Proceso de borrado finalizado", "", true},
};

INSTANTIATE_TEST_SUITE_P(Runs, MemoryRunsOut, ::testing::ValuesIn(cases),
                         [](const auto& one) { return one.param.name; });

}  // namespace

}  // namespace pxtarvo::tests
