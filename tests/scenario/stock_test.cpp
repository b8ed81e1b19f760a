// The stock window: the file that it writes, byte for byte, its checks, and what an error leaves behind.

#include <gmock/gmock.h>

#include <fstream>

#include "stock/frm_existencias.h"
#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A clock that the test moves on.
struct MovedClock : Clock {
    CalendarTime time = sceneTime;
    CalendarTime now() const override { return time; }
};

class StockWindow : public Scene {
  protected:
    void SetUp() override {
        options.clock = clock;
        createEmptyDealer();
        sql("INSERT INTO Marcas (Marca_ID,Marca_Des,Marca_CodAbrev) VALUES (12,'Otra marca','OTRA')");
        desktop = &host().desktop();
        std::filesystem::create_directories(folder / "c/TARVO/STOCK");
    }

    /// An active article of brand 12 with stock rows of these quantities.
    void article(const std::string& code, const std::string& description,
                 const std::vector<std::string>& quantities, const std::string& state = "0",
                 const std::string& brand = "12") {
        sql("INSERT INTO Art (ART_Cod,ART_DES,Art_Marca,Art_Estado) VALUES ('" + code + "','" + description +
            "'," + brand + "," + state + ")");
        for (const std::string& quantity : quantities) {
            sql("INSERT INTO Exis (Exis_IdArt,Exis_Cantidad) SELECT MAX(Art_Id)," + quantity + " FROM Art");
        }
    }

    void inStock(std::function<void(frmExistencias&)> actions) {
        inWindowOf<frmExistencias>(&frmImpTarifas::cmdStock, std::move(actions));
    }
    void choosePartners(frmExistencias& window) {
        desktop->type(window.Text1[1], "24");
        desktop->type(window.Text1[3], "OTRA");
    }
    void generate(frmExistencias& window) { desktop->click(window.XPButton1); }

    std::string bytes(const std::string& name) {
        return tests::bytesOf((folder / "c/TARVO/STOCK" / name).string());
    }

    std::shared_ptr<MovedClock> clock = std::make_shared<MovedClock>();
    portable::SimulatedDesktop* desktop = nullptr;
};

TEST_F(StockWindow, LoadsWithItsDefaults) {
    inStock([&](frmExistencias& window) {
        EXPECT_EQ(window.caption(), "Generación fichero stock");
        std::vector<std::string> texts;
        for (const auto& [index, box] : window.Text1) texts.push_back(box->text());
        EXPECT_THAT(texts, ElementsAre("C:\\TARVO\\STOCK\\StockTarvo20120725.txt", "", "", "", "",
                                       "A24700500", "161", "A24700500"));
        EXPECT_EQ(window.Label2.caption(), "");
        EXPECT_THAT(tabRound(window),
                    ElementsAre("Text1(5)", "Text1(6)", "Text1(7)", "Text1(0)", "cmdFichero", "Text1(1)",
                                "Text1(2)", "Text1(3)", "Text1(4)", "XPButton1"));
        const std::pair<int, std::size_t> limits[] = {{5, 10}, {6, 3}, {7, 20}, {1, 10}, {3, 6}};
        for (const auto& [index, limit] : limits) {
            desktop->type(window.Text1[index], std::string(30, '1'));
            EXPECT_EQ(window.Text1[index].text(), std::string(limit, '1'));
            desktop->type(window.Text1[index], "");
        }
        desktop->press(vkEscape);
        EXPECT_TRUE(window.unloaded());
    });
}

TEST_F(StockWindow, WritesEveryActiveArticleInStock) {
    article("0100123", "A", {"12"});
    article("  CAÑÓN-1 ", "Ñ", {"3"});
    article("123456789012345", "B", {"2.5"});
    article("123456789012345678", "C", {"2.6"});
    article("X-55", "D", {"0.5"});
    article("CERO", "E", {"0"});
    article("MENOS", "F", {"-3"});
    article("POCO", "g", {"0.4"});
    article("MUCHO", "H", {"10000000"});
    article("VARIAS", "o", {"7", "100"});
    article("PRIMERA CERO", "J", {"0", "100"});
    article("NINGUNA", "K", {});
    article("NULA", "L", {"NULL"});
    article("BAJA", "M", {"5"}, "1");
    article("AJENO", "N", {"5"}, "0", "1");
    inStock([&](frmExistencias& window) {
        choosePartners(window);
        generate(window);
        EXPECT_TRUE(window.unloaded());
    });
    const std::string expected =
        "A24700500 BEGFILE                       161A24700500\r\n"
        "A24700500 0100123        250720120000012161A24700500\r\n"
        "A24700500 123456789012345250720120000003161A24700500\r\n"
        "A24700500 123456789012345250720120000003161A24700500\r\n"
        "A24700500 X-55           250720120000001161A24700500\r\n"
        "A24700500 POCO           250720120000000161A24700500\r\n"
        "A24700500 MUCHO          2507201210000000161A24700500\r\n"
        "A24700500 CA\xD1\xD3N-1        250720120000003161A24700500\r\n"
        "A24700500 VARIAS         250720120000007161A24700500\r\n"
        "A24700500 ENDFILE                       161A24700500\r\n";
    EXPECT_EQ(bytes("StockTarvo20120725.txt"), expected);
    EXPECT_THAT(messageTexts(), ElementsAre("Proceso finalizado con exito"));
    EXPECT_EQ(desktop->pointer(), PointerShape::Default);
    const std::vector<std::string> queries = recordOf("execute");
    EXPECT_EQ(queries.at(4), R"({"call":"execute","sql":"SELECT Art_Id,Art_Cod,Art_Des FROM Art WHERE )"
                             R"(Art_Marca = 12AND Art_Estado = 0  ORDER BY Art_Des"})");
    EXPECT_EQ(queries.at(5),
              R"({"call":"execute","sql":"SELECT Exis_Cantidad FROM Exis WHERE Exis_IdArt = 1"})");
    EXPECT_EQ(queries.size(), 5u + 13u) << "one query for each active article of the brand";
}

/// Only the client code is trimmed; what is longer than its columns widens the line. A file that is there is
/// written over.
TEST_F(StockWindow, WritesItsFieldsAsTyped) {
    article("A", "A", {"1"});
    std::ofstream(folder / "c/TARVO/STOCK/mi fichero.txt") << std::string(1000, 'x');
    inStock([&](frmExistencias& window) {
        choosePartners(window);
        desktop->type(window.Text1[5], " Ñ1 ");
        desktop->type(window.Text1[6], " 16");
        desktop->type(window.Text1[7], " CALLE MAYOR 1");
        desktop->type(window.Text1[0], " C:\\tarvo\\stock\\mi fichero.txt ");
        generate(window);
    });
    EXPECT_EQ(bytes("mi fichero.txt"),
              "\xD1"
              "1        BEGFILE                        16 CALLE MAYOR 1\r\n"
              "\xD1"
              "1        A              250720120000001 16 CALLE MAYOR 1\r\n"
              "\xD1"
              "1        ENDFILE                        16 CALLE MAYOR 1\r\n");
}

TEST_F(StockWindow, ChecksItsFieldsInTurn) {
    struct Case {
        int index;
        const char* message;
    };
    const Case cases[] = {{5, "No ha informado del codigo de cliente"},
                          {6, "No ha informado del campo organización"},
                          {7, "No ha informado de la direción de envío"},
                          {1, "Debe indicar el codigo de proveedor"},
                          {3, "Debe indicar el codigo de la marca"}};
    inStock([&](frmExistencias& window) {
        for (const Case& one : cases) desktop->type(window.Text1[one.index], one.index > 3 ? "  " : "");
        for (const Case& one : cases) {
            generate(window);
            desktop->doEvents();
            EXPECT_EQ(messageTexts().back(), one.message);
            EXPECT_EQ(window.activeControl(), &window.Text1[one.index])
                << "the Enter that closes the message leaves the focus there";
            desktop->type(window.Text1[one.index], one.index == 1 ? "24" : "1");
        }
        EXPECT_FALSE(window.unloaded());
    });
    EXPECT_EQ(messageTexts().size(), std::size(cases));
    EXPECT_THAT(record, ::testing::Not(::testing::Contains(HasSubstr("FROM Art "))));
}

TEST_F(StockWindow, ShowsItsProgressAndDatesEachLine) {
    article("A", "PRIMERO", {"1"});
    article("B", "SEGUNDO", {"1"});
    std::vector<std::string> shown;
    inStock([&](frmExistencias& window) {
        choosePartners(window);
        user().onYielded = [&] {
            shown.push_back(window.Label2.caption());
            if (shown.size() < 2) return;
            EXPECT_EQ(desktop->pointer(), PointerShape::ArrowHourglass);
            EXPECT_EQ(window.ProgressBar1.maximum(), 2);
            EXPECT_EQ(window.ProgressBar1.value(), 1);
            clock->time.day = 26;
            desktop->press(vkEscape);  // the run goes on without the window
        };
        generate(window);
        user().onYielded = nullptr;
    });
    EXPECT_THAT(shown, ElementsAre("", "Procesado registro 1 PRIMERO"));
    EXPECT_THAT(bytes("StockTarvo20120725.txt"),
                ::testing::AllOf(HasSubstr("A              25072012"), HasSubstr("B              26072012"),
                                 HasSubstr("ENDFILE")));
    EXPECT_THAT(messageTexts(), ElementsAre("Proceso finalizado con exito"));
    EXPECT_EQ(recordOf("unload").size(), 2u);
}

/// What failed is not put away: the pointer stays busy and an opened file open, for later windows too.
TEST_F(StockWindow, AnErrorLeavesPointerAndFileAsTheyAre) {
    inStock([&](frmExistencias& window) {
        choosePartners(window);
        generate(window);
        EXPECT_THAT(messageTexts().back(), StartsWith("Error '3021'")) << "no active article";
        EXPECT_FALSE(std::filesystem::exists(folder / "c/TARVO/STOCK/StockTarvo20120725.txt"));
        EXPECT_EQ(desktop->pointer(), PointerShape::ArrowHourglass);

        article("A", "A", {"1"});
        const std::pair<const char*, const char*> paths[] = {{"C:\\NO\\HAY.txt", "Error '76'"},
                                                             {"  ", "Error '75'"}};
        for (const auto& [path, report] : paths) {
            desktop->type(window.Text1[0], path);
            generate(window);
            EXPECT_THAT(messageTexts().back(), StartsWith(report));
        }

        native("ALTER TABLE Exis RENAME TO Otra");
        desktop->type(window.Text1[0], "C:\\TARVO\\STOCK\\a.txt");
        generate(window);
        EXPECT_THAT(messageTexts().back(), HasSubstr("'Exis' no es válido"));
        generate(window);
        EXPECT_THAT(messageTexts().back(), StartsWith("Error '55'"));
        EXPECT_FALSE(window.unloaded());
    });
    native("ALTER TABLE Otra RENAME TO Exis");
    inStock([&](frmExistencias& window) {
        EXPECT_EQ(desktop->pointer(), PointerShape::ArrowHourglass);
        choosePartners(window);
        desktop->type(window.Text1[0], "C:\\TARVO\\STOCK\\a.txt");
        generate(window);
        EXPECT_THAT(messageTexts().back(), StartsWith("Error '55'"));
        desktop->type(window.Text1[0], "C:\\TARVO\\STOCK\\b.txt");
        generate(window);
        EXPECT_EQ(messageTexts().back(), "Proceso finalizado con exito") << "another file";
    });
}

/// Neither run that leaves its file open keeps the other from its own.
TEST_F(StockWindow, NeitherItsFileNorTheArticleFileBlocksTheOther) {
    article("A", "A", {"1"});
    const std::filesystem::path articles = folder / "c/TARVO/articulo.tdw";
    const auto updateLocations = [&] {
        inWindow([&](frmImpTarifas& window) { desktop->click(window.XPButton4); });
        return messageTexts().back();
    };
    const auto generated = [&](const char* path) {
        inStock([&](frmExistencias& window) {
            choosePartners(window);
            desktop->type(window.Text1[0], path);
            generate(window);
        });
        return messageTexts().back();
    };
    native("ALTER TABLE Exis RENAME TO Otra");
    EXPECT_THAT(generated("C:\\TARVO\\STOCK\\a.txt"), HasSubstr("'Exis' no es válido"));
    native("ALTER TABLE Otra RENAME TO Exis");
    std::ofstream(articles) << "";
    EXPECT_THAT(updateLocations(), StartsWith("Proceso de importacion"));
    std::ofstream(articles) << "corta\r\n";
    EXPECT_THAT(updateLocations(), StartsWith("Error '9'"));
    EXPECT_EQ(generated("C:\\TARVO\\STOCK\\b.txt"), "Proceso finalizado con exito");
    EXPECT_THAT(updateLocations(), StartsWith("Error '55'"));
}

/// Cancelling empties the path; the release of the Esc that did it closes the window.
TEST_F(StockWindow, BrowsingFillsOrEmptiesThePath) {
    inStock([&](frmExistencias& window) {
        user().files = {"C:\\LISTA.xls", std::nullopt};
        desktop->click(window.cmdFichero);
        EXPECT_EQ(window.Text1[0].text(), "C:\\LISTA.xls");
        EXPECT_FALSE(window.unloaded());
        desktop->click(window.cmdFichero);
        EXPECT_EQ(window.Text1[0].text(), "");
        EXPECT_TRUE(window.unloaded());
    });
}

}  // namespace

}  // namespace pxtarvo::test
