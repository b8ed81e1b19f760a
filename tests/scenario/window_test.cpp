// The import window as its user meets it: defaults, code fields, searches, keys, the file dialog.

#include <gmock/gmock.h>

#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class ImportWindow : public Scene {
  protected:
    void SetUp() override {
        createEmptyDealer();
        sql("INSERT INTO Pro (Pro_ID,Pro_COD,Pro_NOM,Pro_APE1,Pro_APE2,Pro_TIPDOC) "
            "VALUES (7,31,'Ana','Ruiz','Peña',1)");
        sql("INSERT INTO Pro (Pro_ID,Pro_COD,Pro_comer,Pro_TIPDOC) VALUES (9,32,'Talleres Ñ',1)");
        sql("INSERT INTO Marcas (Marca_ID,Marca_Des,Marca_CodAbrev) VALUES (12,'Otra marca','OTRA')");
        desktop = &host().desktop();
    }

    portable::SimulatedDesktop* desktop = nullptr;
};

std::string nameOf(const Control* control) {
    return control ? control->fullName() : "none";
}

TEST_F(ImportWindow, LoadsWithItsDefaults) {
    inWindow([&](frmImpTarifas& window) {
        EXPECT_EQ(window.caption(), " Importación de Tarifa de recambios ");
        EXPECT_THAT(window.Combo1.items(),
                    ElementsAre("2006", "2007", "2008", "2009", "2010", "2011", "2012"));
        EXPECT_EQ(window.Combo1.text(), "2012");
        EXPECT_TRUE(window.Option1[0].value());
        std::vector<std::string> texts;
        for (const auto& [index, box] : window.Text1) texts.push_back(box->text());
        EXPECT_THAT(texts, ElementsAre("C:\\TARVO\\TARIFA2012.MDB", "24", "RECAMBIOS", "SAME", "Same"));
        EXPECT_EQ(window.Label2.caption(), "");
        EXPECT_FALSE(window.ProgressBar1.visible());
    });
    EXPECT_THAT(record, ElementsAre(HasSubstr("FROM Pro where Pro_COD=24\""),
                                    HasSubstr("FROM Marcas where Marca_CodAbrev = 'SAME'\""),
                                    HasSubstr("\"unload\"")));
}

TEST_F(ImportWindow, PathFollowsTheListOnlyWhenItIsClicked) {
    inWindow([&](frmImpTarifas& window) {
        desktop->choose(window.Combo1, "2008");
        EXPECT_EQ(window.Text1[0].text(), "C:\\TARVO\\TARIFA2012.MDB");
        desktop->click(window.Option1[1]);
        EXPECT_EQ(window.Text1[0].text(), "C:\\TARVO\\CÓDIGO DE BARRAS2008.xls");
        EXPECT_FALSE(window.Option1[0].value());
        desktop->click(window.Option1[0]);
        EXPECT_EQ(window.Text1[0].text(), "C:\\TARVO\\TARIFA2008.MDB");
        const std::size_t calls = record.size();
        desktop->click(window.XPButton2);
        desktop->choose(window.Combo1, "2011");
        desktop->click(window.Option1[1]);
        desktop->click(window.XPButton1);
        EXPECT_EQ(record.size(), calls) << "neither button does anything here";
    });
}

TEST_F(ImportWindow, BrowsingFillsOrEmptiesThePath) {
    inWindow([&](frmImpTarifas& window) {
        user().onChooseFile = [&](const OpenFileName& dialog) -> std::optional<std::string> {
            EXPECT_EQ(dialog.lpstrFilter, "*.xls");
            EXPECT_EQ(dialog.lpstrTitle, "Selección del fichero de tarifas para importar");
            EXPECT_EQ(dialog.lpstrInitialDir, host().platform().moduleFolder());
            EXPECT_EQ(dialog.lpstrFile, std::string(254, ' '));
            EXPECT_EQ(dialog.nMaxFile, 255u);
            return "C:\\Listas\\tarifa ñ.mdb ";
        };
        desktop->click(window.cmdFichero);
        EXPECT_EQ(window.Text1[0].text(), "C:\\Listas\\tarifa ñ.mdb ")
            << "only the end of the dialog's text is cut";
        user().onChooseFile = nullptr;
        desktop->click(window.cmdFichero);
        EXPECT_EQ(window.Text1[0].text(), "");
        EXPECT_TRUE(window.unloaded()) << "the release of the Esc that cancelled reaches the window";
    });
}

TEST_F(ImportWindow, EmptyFilterOffersWorkbooks) {
    host();
    user().onChooseFile = [&](const OpenFileName& dialog) -> std::optional<std::string> {
        EXPECT_EQ(dialog.lpstrFilter, std::string("Fichero Excel (*.XLS)\0*.XLS\0", 28));
        return std::string(300, 'x');
    };
    EXPECT_EQ(SeleccionarFichero("C:\\", "", ""), "") << "a path beyond the buffer cannot be returned";
}

TEST_F(ImportWindow, CodesAreCheckedWhenTheFieldIsLeft) {
    struct Case {
        int field;
        const char* typed;
        std::vector<const char*> fields;  ///< code and name afterwards
        const char* message;
    };
    const Case cases[] = {
        {1, "24", {"24", "RECAMBIOS"}, nullptr},
        {1, "31", {"31", "Ana Ruiz Peña"}, nullptr},
        {1, "32", {"32", "Talleres Ñ"}, nullptr},
        {1, "99", {"", ""}, "Codigo Proveedor no existe"},
        {1, "", {"", "RECAMBIOS"}, nullptr},
        {3, "OTRA", {"OTRA", "Otra marca"}, nullptr},
        {3, "otra", {"OTRA", "Otra marca"}, nullptr},
        {3, "NADA", {"", ""}, "Codigo Marca no existe"},
        {3, "", {"", "Same"}, nullptr},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(std::string(one.typed) + " in field " + std::to_string(one.field));
        inWindow([&](frmImpTarifas& window) {
            TextBox& code = window.Text1[one.field];
            const std::size_t shown = user().messages().size();
            desktop->type(code, one.typed);
            desktop->press(vkReturn);
            desktop->doEvents();
            EXPECT_EQ(code.text(), one.fields[0]);
            EXPECT_EQ(window.Text1[one.field + 1].text(), one.fields[1]);
            if (one.message) {
                ASSERT_EQ(user().messages().size(), shown + 1);
                EXPECT_EQ(user().messages().back().message.text, one.message);
                EXPECT_EQ(window.activeControl(), &code) << "the Enter that closed the message moves nothing";
                EXPECT_EQ(window.tag(), "");
            } else {
                EXPECT_EQ(user().messages().size(), shown);
                EXPECT_EQ(window.activeControl(), &window.Text1[one.field + 1]);
            }
        });
    }
}

TEST_F(ImportWindow, FailingChecksAreReportedAndTheWindowGoesOn) {
    inWindow([&](frmImpTarifas& window) {
        desktop->type(window.Text1[3], "O'TRA");
        desktop->click(window.Text1[0]);
        EXPECT_THAT(messageTexts().back(), HasSubstr("Error '-2147217900' en tiempo de ejecución:\r\n\r\n"));
        // The key filter keeps letters out, but not the code's own text.
        window.Text1[1].setText("veinte");
        desktop->click(window.Text1[1]);
        desktop->click(window.Text1[0]);
        EXPECT_EQ(messageTexts().back(), "Error '13' en tiempo de ejecución:\r\n\r\nNo coinciden los tipos");
        EXPECT_EQ(user().messages().back().message.icon, MessageIcon::Critical);
        EXPECT_FALSE(window.unloaded());
    });
}

TEST_F(ImportWindow, SupplierSearch) {
    inWindow([&](frmImpTarifas& window) {
        user().yesNo = MessageAnswer::Yes;
        user().choices.push_back(std::string("ana"));
        desktop->click(window.Text1[1]);
        desktop->press(vkF1);
        EXPECT_EQ(window.Text1[1].text(), "31");
        EXPECT_EQ(window.Text1[2].text(), "Ana Ruiz Peña");
        EXPECT_EQ(messageTexts().back(),
                  "Desea Buscar por el nombre Fiscal ?.\r\nSi contesta NO, la busqueda será por Nombre "
                  "Comercial");

        user().yesNo = MessageAnswer::No;
        user().choices.push_back(std::monostate());
        desktop->press(vkF1);
        EXPECT_EQ(window.Text1[1].text(), "");
        EXPECT_EQ(window.Text1[2].text(), "");
        // A negative code asks for the search too, when the field is left.
        desktop->type(window.Text1[1], "-5");
        user().choices.push_back(std::string("talleres"));
        desktop->click(window.Text1[0]);
        EXPECT_EQ(window.Text1[1].text(), "32");
    });
    const std::vector<std::string> searches = recordOf("search");
    ASSERT_EQ(searches.size(), 3u);
    EXPECT_EQ(
        searches[0],
        R"({"call":"search","sql":"Select Pro_ID,Pro_COD,(isnull((CASE WHEN Pro_TIPDOC =0 THEN Pro_NOM ELSE )"
        R"(Pro_Nom + ' ' + Pro_APE1 + ' ' + Pro_APE2 END),Pro_comer)) as Pro_Nom FROM Pro","column":"Pro_Nom",)"
        R"("title":"Buscar Proveedores por nombre Fiscal","answer":"7\u000131\u0001Ana Ruiz Peña"})");
    EXPECT_EQ(searches[1],
              R"({"call":"search","sql":"Select Pro_ID,Pro_COD,Pro_COMER FROM Pro ORDER BY Pro_COMER",)"
              R"("column":"Pro_COMER","title":"Buscar Proveedores por nombre Comercial","answer":""})");
}

TEST_F(ImportWindow, BrandSearch) {
    options.makeSource = memorySource({listRow("A", 1.0, "C")});
    SetUp();
    inWindow([&](frmImpTarifas& window) {
        user().choices.push_back(std::string("otra"));
        desktop->click(window.Text1[3]);
        desktop->press(vkF1);
        EXPECT_EQ(window.Text1[3].text(), "OTRA");
        EXPECT_EQ(window.Text1[4].text(), "Otra marca");
        // Choosing nothing leaves the code standing, but no brand is chosen until the field is left.
        user().choices.push_back(std::monostate());
        desktop->press(vkF1);
        EXPECT_EQ(window.Text1[3].text(), "OTRA");
        press(window);
    });
    EXPECT_EQ(value("SELECT Art_Marca FROM Art"), "12");
    EXPECT_EQ(
        recordOf("search")[0],
        R"({"call":"search","sql":"Select Marca_ID,Marca_Des,Marca_CodAbrev FROM Marcas","column":"Marca_Des",)"
        R"("title":"Buscar Marcas por nombre","answer":"12\u0001Otra marca\u0001OTRA"})");
}

TEST_F(ImportWindow, KeysAndTabOrder) {
    inWindow([&](frmImpTarifas& window) {
        std::vector<std::string> order;
        for (int i = 0; i < 15; ++i) {
            order.push_back(nameOf(window.activeControl()));
            desktop->press(vkTab);
        }
        EXPECT_THAT(order, ElementsAre("Option1(0)", "Combo1", "Text1(0)", "cmdFichero", "XPButton2",
                                       "Text1(1)", "Text1(2)", "Text1(3)", "Text1(4)", "XPButton1",
                                       "cmdStock", "cmdBorrado", "XPButton4", "XPButton3", "Option1(0)"));
        desktop->click(window.Text1[0]);
        desktop->press(vkPageUp);
        desktop->press(vkPageDown);
        desktop->press(vkF1);
        EXPECT_EQ(nameOf(window.activeControl()), "Text1(0)");
        desktop->press(vkReturn);
        desktop->doEvents();
        EXPECT_EQ(nameOf(window.activeControl()), "cmdFichero");
        EXPECT_FALSE(window.unloaded());
        desktop->press(vkEscape);
        EXPECT_TRUE(window.unloaded());
    });
}

/// Entering the supplier's name box takes the slashes out of it; the field in focus is yellow, the others
/// white.
TEST_F(ImportWindow, FocusColoursAndFormats) {
    inWindow([&](frmImpTarifas& window) {
        window.Text1[2].setText("25/07/2006");
        desktop->click(window.Text1[2]);
        EXPECT_EQ(window.Text1[2].text(), "25072006");
        EXPECT_EQ(window.Text1[2].backColor(), 65535u);
        desktop->click(window.Text1[0]);
        EXPECT_EQ(window.Text1[2].text(), "25/07/2006");
        EXPECT_EQ(window.Text1[2].backColor(), 16777215u);
        desktop->type(window.Text1[1], "2x4");
        EXPECT_EQ(window.Text1[1].text(), "24") << "only digits pass";
    });
}

/// Nothing chosen in the search that a negative code or a blank one asks for leaves no supplier or brand at
/// all.
TEST_F(ImportWindow, SearchesWithoutAChoice) {
    inWindow([&](frmImpTarifas& window) {
        desktop->type(window.Text1[1], "-1");
        EXPECT_FALSE(desktop->click(window.XPButton1));
        EXPECT_EQ(messageTexts().back(), "Codigo Proveedor no existe");
        EXPECT_EQ(nameOf(window.activeControl()), "Text1(1)");
        desktop->type(window.Text1[3], "   ");
        EXPECT_FALSE(desktop->click(window.XPButton1));
        EXPECT_EQ(messageTexts().back(), "Codigo Marca no existe");
        EXPECT_EQ(nameOf(window.activeControl()), "Text1(3)");
    });
    EXPECT_EQ(recordOf("search").size(), 2u);
}

/// The import follows the year shown, the path the year of the last click on a list.
TEST_F(ImportWindow, YearChangedAfterTheClick) {
    options.makeSource = memorySource({listRow("A", 1.0, "C")});
    SetUp();
    inWindow([&](frmImpTarifas& window) {
        desktop->choose(window.Combo1, "2008");
        press(window);
    });
    EXPECT_THAT(recordOf("source.open"), ElementsAre(HasSubstr("TARIFA2012.MDB")));
    EXPECT_THAT(record, testing::Contains(HasSubstr("AND Art_Mar = 1")));
}

/// The progress text shows the code as the list has it; the oldest list leaves the bar alone.
TEST_F(ImportWindow, Progress) {
    options.makeSource = memorySource({listRow(" A ", 1.0, "C"), listRow("B", 2.0, "C")});
    for (const char* year : {"2007", "2008", "2012"}) {
        SCOPED_TRACE(year);
        SetUp();
        std::vector<std::string> shown;
        inWindow([&](frmImpTarifas& window) {
            user().onYielded = [&] { shown.push_back(window.Label2.caption()); };
            desktop->choose(window.Combo1, year);
            press(window);
            const bool bar = std::string_view(year) != "2007";
            EXPECT_EQ(window.ProgressBar1.visible(), bar);
            EXPECT_EQ(window.ProgressBar1.maximum(), bar ? 2 : 100);
            EXPECT_EQ(window.ProgressBar1.value(), bar ? 2 : 0);
            EXPECT_EQ(window.Label2.caption(), "Procesado registro 2 B");
        });
        EXPECT_EQ(shown.back(), "Procesado registro 1  A ");
    }
}

/// Nothing of the first window survives into the second.
TEST_F(ImportWindow, OpensAfreshEachTime) {
    inWindow([&](frmImpTarifas& window) {
        desktop->choose(window.Combo1, "2007");
        desktop->type(window.Text1[3], "OTRA");
    });
    inWindow([&](frmImpTarifas& window) {
        EXPECT_EQ(window.Combo1.text(), "2012");
        EXPECT_EQ(window.Text1[3].text(), "SAME");
    });
    EXPECT_EQ(recordOf("unload").size(), 2u);
}

}  // namespace

}  // namespace pxtarvo::test
