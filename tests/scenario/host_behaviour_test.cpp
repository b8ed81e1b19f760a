// A host that refuses, fails, changes its context or has a transaction of its own, and users who do not wait.

#include <gmock/gmock.h>

#include "tests/scenario/memory_workbook.h"
#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;

class HostBehaviour : public Scene {
  protected:
    void SetUp() override {
        options.makeSource =
            memorySource({listRow("A", 1.0, "C"), listRow("B", 2.0, "M"), listRow("C", 3.0, "C")});
        createEmptyDealer();
        sql("INSERT INTO Art (ART_Cod,ART_PVE,Art_Marca,Art_Estado) VALUES ('VIEJO',5,1,0)");
    }

    /// Starts the import and acts when it yields before its second row.
    void afterFirstRow(const std::function<void(frmImpTarifas&)>& action) {
        bool done = false;
        inWindow([&](frmImpTarifas& window) {
            user().onYielded = [&] {
                if (!done && window.Label2.caption() == "Procesado registro 1 A") {
                    done = true;
                    action(window);
                }
            };
            press(window);
        });
        EXPECT_TRUE(done);
    }
};

/// A run hands over one text for all its insertions, empty at first: a host finds in it what it left there.
TEST_F(HostBehaviour, MessageTextIsKeptFromOneInsertionToTheNext) {
    static std::vector<std::string> found;
    struct Host : devhost::DevHostDatabase {
        using DevHostDatabase::DevHostDatabase;
        bool Insertar(std::string& sMensaje) override {
            found.push_back(sMensaje);
            DevHostDatabase::Insertar(sMensaje);
            sMensaje = std::to_string(found.size());
            return true;
        }
    };
    const auto list = memorySource({{Null{}, "A", Null{}, 1.0, 1.0, "C", Null{}, Null{}, Null{}, "D"},
                                    {Null{}, "B", Null{}, 2.0, 2.0, "M", Null{}, Null{}, Null{}, "D"}});
    const auto sheet = memoryWorkbook({{"A", "D", "1"}, {"B", "D", "2"}});
    for (const auto& [year, option, inserted] :
         {std::tuple{"2012", 0, 6}, std::tuple{"2006", 0, 4}, std::tuple{"2008", 1, 4}}) {
        SCOPED_TRACE(year);
        createEmptyDealer();
        options.makeSource = list;
        options.makeSpreadsheet = sheet;
        options.rotateContexts = false;
        found.clear();
        host().handOver(makeObject<Host>(std::make_shared<devhost::HostState>(host().state())));
        run(&frmImpTarifas::XPButton1, {.year = year}, option);
        std::vector<std::string> left{""};
        for (int at = 1; at < inserted; ++at) left.push_back(std::to_string(at));
        EXPECT_EQ(found, left);
    }
}

TEST_F(HostBehaviour, ContextNeverSetFailsAtTheFirstUse) {
    host().handOver(nullptr);
    EXPECT_FALSE(host().instance().MyBd());
    try {
        host().run();
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_TRUE(error.is(ErrorNumber::ObjectNotSet));
        EXPECT_EQ(error.description(), "Variable de objeto o bloque With no establecido");
    }
}

/// A transaction of the host's own is rolled back by the run that finds it.
TEST_F(HostBehaviour, TransactionAlreadyOpen) {
    sql("UPDATE Art SET ART_PVE = 6");
    host().connection()->BeginTrans();
    sql("UPDATE Art SET ART_PVE = 7");
    import({});
    EXPECT_THAT(messageTexts().back(), testing::StartsWith("Registro 0. "));
    EXPECT_EQ(value("SELECT ART_PVE FROM Art"), "6");
    EXPECT_THROW(host().connection()->RollbackTrans(), RuntimeError);
}

/// The second run cannot begin its transaction, rolls back the first one's and closes the window. What the
/// first one writes afterwards stays; its commit and its roll back are both refused.
TEST_F(HostBehaviour, SecondRunDuringTheFirst) {
    afterFirstRow([&](frmImpTarifas& window) { press(window); });
    EXPECT_THAT(messageTexts(),
                ElementsAre("stabla List", "stabla List", "stabla List", "stabla List",
                            testing::StartsWith("Registro 0. "),
                            testing::StartsWith("Error '-2147168242' en tiempo de ejecución:")));
    EXPECT_THAT(recordOf("unload"), ElementsAre("{\"call\":\"unload\",\"window\":\"frmImpTarifas\"}"));
    EXPECT_THAT(rows("SELECT Art_Cod FROM Art ORDER BY Art_Id"), ElementsAre("VIEJO", "B", "C"));
    EXPECT_EQ(value("SELECT Art_Estado FROM Art WHERE Art_Cod = 'VIEJO'"), "0");
}

/// The release of a key that closed a message goes to whatever is in front by then: the second notice takes
/// that of the first one, the window that of the second.
TEST_F(HostBehaviour, EscOnANoticeClosesTheWindowAndTheRunGoesOn) {
    bool open = false;
    user().onMessage = [&](const devhost::ShownMessage&) {
        if (user().messages().size() == 2) open = !host().desktop().activeWindow()->unloaded();
    };
    user().replies.push_back({MessageAnswer::Ok, vkEscape});
    user().replies.push_back({MessageAnswer::Ok, vkEscape});
    import({});
    EXPECT_TRUE(open);
    EXPECT_EQ(messageTexts().back(), "Proceso finalizado con exito");
    EXPECT_EQ(value("SELECT count(*) FROM ArtPro"), "3");
    EXPECT_EQ(recordOf("unload").size(), 1u);
}

TEST_F(HostBehaviour, NewestInstanceAnswers) {
    std::weak_ptr<PXTarvor> second;
    {
        const auto instance = PXTarvor::crear({});
        second = instance;
        EXPECT_EQ(&goInstancia(), instance.get());
    }
    EXPECT_FALSE(second.expired()) << "the module keeps the newest instance";
    dropHost();
    host();
    EXPECT_TRUE(second.expired()) << "a newer instance replaces it";
}

}  // namespace

}  // namespace pxtarvo::test
