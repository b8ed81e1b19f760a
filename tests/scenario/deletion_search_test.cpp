// The deletion window and its search: which articles are found, what the window shows meanwhile and after.

#include <gmock/gmock.h>

#include "tests/scenario/deletion_scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* statement =
    "SELECT Art_Id,Art_Cod,Art_Des, (SELECT Marca_DES FROM Marcas WHERE Marca_Id = Art_Marca) "
    "AS Marca, (SELECT FAM_DES FROM Fam WHERE Fam_Id = Art_FAm) AS Familia, ISNULL((SELECT 'Si' "
    "FROM Exis WHERE Exis_IdArt = Art_Id OR Exis_Codart = Art_Cod),'No') "
    "AS Almacen,CASE WHEN Art_Estado = 0 then 'Activo' else 'Baja' END As Estado,Art_FechaEstado "
    "FROM Art WHERE Art_Id NOT IN (SELECT Lapr_IdArt FROM Lapr GROUP BY Lapr_IdArt)  "
    "AND art_id NOT IN (SELECT PedLi_IdArt FROM Pedli GROUP BY PedLi_IdArt)  "
    "AND art_id not in (select lav_idart from lav group by lav_idart)  AND Art_Id NOT IN "
    "(SELECT Lpc_IdArt FROM Lpc GROUP BY Lpc_IdArt)  AND art_cod not in (select lac_codart "
    "from lac group by lac_codart)  AND Art_Id NOT IN (SELECT Hexis_idArt FROM Hexis GROUP BY Hexis_idArt) ";

class DeletionSearch : public DeletionScene {
  protected:
    /// Articles that differ in every criterion.
    void variedArticles() {
        article("SIN FECHA");
        article("VIEJO", ",Art_FechaEstado", ",'01/02/2005'");
        article("LIMITE", ",Art_FechaEstado", ",'25/07/2006 23:59:59'");
        article("DESPUES", ",Art_FechaEstado", ",'26/07/2006'");
        article("RETIRADO", ",Art_FechaEstado,Art_Estado", ",'01/01/2006',1");
        article("OTRO ESTADO", ",Art_FechaEstado,Art_Estado", ",'02/01/2006',2");
        article("AJENO", ",Art_FechaEstado", ",'03/01/2006'");
        sql("UPDATE Art SET Art_Marca = 12 WHERE Art_Cod = 'AJENO'");
    }
    /// The codes that a search finds; "(closed)" when it closes the window.
    std::vector<std::string> found(const SearchSteps& steps) {
        std::vector<std::string> codes;
        inDeletion([&](frmBorradoArticulos& window) {
            search(window, steps);
            if (window.unloaded()) return codes.emplace_back("(closed)"), void();
            const ObjectRef<Recordset> rows = window.dbgDatos.dataSource()->Clone();
            for (; !rows->Eof(); rows->MoveNext())
                codes.push_back(*rows->Fields("Art_Cod").get<std::string>());
        });
        return codes;
    }
    std::string lastSearch() {
        const std::vector<std::string> queries = recordOf("execute");
        return queries.back();
    }
};

TEST_F(DeletionSearch, LoadsWithItsDefaults) {
    inDeletion([&](frmBorradoArticulos& window) {
        EXPECT_EQ(window.caption(), "Borrado masivo de artículos (Versión 1.0.57)");
        EXPECT_THAT(tabRound(window), ElementsAre("Text1(3)", "Text1(4)", "Text1(1)", "Check1", "Option3",
                                                  "cmdInicio", "cmdSalir", "dbgDatos"));
        desktop->type(window.Text1[3], "OTRAMAS");
        EXPECT_EQ(window.Text1[3].text(), "OTRAMA");
        desktop->type(window.Text1[3], "");
        desktop->type(window.Text1[1], "25/07/2006x1");
        EXPECT_EQ(window.Text1[1].text(), "25/07/2006");
        EXPECT_FALSE(window.ProgressBar1.visible() || window.Label2.visible() || window.ListView1.visible());
        desktop->click(window.cmdSalir);
        EXPECT_TRUE(window.unloaded());
    });
}

TEST_F(DeletionSearch, FindsWhatNoMovementRefersTo) {
    for (const char* code : {"LIBRE", "lapr", "pedli", "lav", "lpc", "LÁC ", "hexis"}) article(code);
    sql("INSERT INTO Lapr (Lapr_IdArt) VALUES (2)");
    sql("INSERT INTO Pedli (PedLi_IdArt) VALUES (3)");
    sql("INSERT INTO lav (lav_idart) VALUES (4)");
    sql("INSERT INTO Lpc (Lpc_IdArt) VALUES (5)");
    sql("INSERT INTO lac (lac_codart) VALUES ('lác')");
    sql("INSERT INTO Hexis (Hexis_idArt) VALUES (7)");
    EXPECT_THAT(found({}), ElementsAre("LIBRE"));
    EXPECT_EQ(lastSearch(),
              std::string(R"({"call":"execute","sql":")") + statement + R"( ORDER BY Art_FechaEstado"})");
    const std::pair<std::string, std::string> references[] = {
        {"Lapr", "Lapr_IdArt"}, {"Pedli", "PedLi_IdArt"}, {"lav", "lav_idart"},
        {"Lpc", "Lpc_IdArt"},   {"lac", "lac_codart"},    {"Hexis", "Hexis_idArt"}};
    for (const auto& [table, column] : references) {
        SCOPED_TRACE(table);
        sql("INSERT INTO " + table + " (" + column + ") VALUES (NULL)");
        EXPECT_THAT(found({}), ElementsAre("(closed)")) << "a row without an article excludes every article";
        sql("DELETE FROM " + table + " WHERE " + column + " IS NULL");
        EXPECT_THAT(found({}), ElementsAre("LIBRE"));
    }
}

TEST_F(DeletionSearch, NarrowsByBrandDateAndState) {
    variedArticles();
    struct Case {
        SearchSteps steps;
        std::vector<std::string> codes;
        const char* criteria;
    };
    constexpr auto active = &frmBorradoArticulos::Option1;
    constexpr auto retired = &frmBorradoArticulos::Option2;
    const Case cases[] = {
        {{}, {"SIN FECHA", "VIEJO", "RETIRADO", "OTRO ESTADO", "AJENO", "LIMITE", "DESPUES"}, ""},
        {{.until = "25072006"},  // the field puts the slashes in
         {"VIEJO", "RETIRADO", "OTRO ESTADO", "AJENO", "LIMITE"},
         " AND  Art_FechaEstado<='25/07/2006 23:59:59'"},
        {{.until = "32/13/2006", .state = retired}, {"RETIRADO"}, " AND Art_Estado=1"},
        {{.state = active}, {"SIN FECHA", "VIEJO", "AJENO", "LIMITE", "DESPUES"}, " AND Art_Estado=0"},
        {{.brand = "otra"}, {"AJENO"}, " AND Art_Marca = 12"},
        {{.brand = "SAME", .until = "31/12/2005", .state = active},
         {"VIEJO"},
         " AND  Art_FechaEstado<='31/12/2005 23:59:59' AND Art_Estado=0 AND Art_Marca = 1"},
        {{.brand = "OTRA", .state = retired}, {"(closed)"}, " AND Art_Estado=1 AND Art_Marca = 12"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.criteria);
        EXPECT_EQ(found(one.steps), one.codes);
        EXPECT_THAT(lastSearch(),
                    EndsWith(std::string("Hexis_idArt) ") + one.criteria + " ORDER BY Art_FechaEstado\"}"));
    }
}

TEST_F(DeletionSearch, ShowsThatItWaits) {
    article("A");
    int asked = 0;
    dropHost();
    frmBorradoArticulos* open = nullptr;
    options.recorder = std::make_shared<devhost::Recorder>([&](std::string_view line) {
        if (line.find("FROM Art WHERE") == std::string_view::npos) return;
        ++asked;
        EXPECT_FALSE(open->enabled());
        EXPECT_EQ(desktop->pointer(), PointerShape::ArrowHourglass);
    });
    desktop = &host().desktop();
    inDeletion([&](frmBorradoArticulos& window) {
        open = &window;
        std::vector<std::string> shown;
        user().onYielded = [&] {
            shown.push_back(window.Label2.caption());
            EXPECT_EQ(asked, 0);
            EXPECT_TRUE(window.Label2.visible() && window.ProgressBar1.visible() && window.enabled());
            EXPECT_FALSE(window.cmdInicio.enabled());
            EXPECT_EQ(desktop->pointer(), PointerShape::ArrowHourglass);
        };
        search(window);
        user().onYielded = nullptr;
        EXPECT_THAT(shown, ElementsAre("Buscando artículos"));
        EXPECT_EQ(asked, 1);
        EXPECT_TRUE(window.enabled() && window.cmdBorrar.enabled());
        EXPECT_FALSE(window.cmdInicio.enabled());
        EXPECT_EQ(desktop->pointer(), PointerShape::Default);
    });
}

TEST_F(DeletionSearch, ShowsWhatItFound) {
    native(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1234) "
        "INSERT INTO Art (ART_Cod, ART_DES, Art_Marca, Art_FAm, Art_FechaEstado) "
        "SELECT 'C' || i, 'Pieza', 1, 5, '2006-07-25 10:00:00' FROM n");
    sql("INSERT INTO Fam (Fam_Id,FAM_DES) VALUES (5,'Filtros')");
    sql("INSERT INTO Exis (Exis_Codart) VALUES ('c1')");
    inDeletion([&](frmBorradoArticulos& window) {
        desktop->click(window.Check1);  // changes nothing
        search(window);
        EXPECT_EQ(window.Label2.caption(),
                  "Número de Artículos encontrados 1.234 - Buscando sin movimientos");
        EXPECT_EQ(window.ProgressBar1.maximum(), 1234);
        std::vector<std::string> columns;
        const ObjectRef<Recordset>& rows = window.dbgDatos.dataSource();
        for (std::size_t at = 0; at < window.dbgDatos.columns().size(); ++at) {
            const GridColumn& column = window.dbgDatos.columns()[at];
            columns.push_back(column.caption + "|" + std::to_string(column.width) +
                              (column.visible ? "" : "|hidden") + (column.centred ? "|centred" : "") + "|" +
                              cellText(column, rows->Fields(static_cast<std::int32_t>(at)), spanishLocale()));
        }
        EXPECT_THAT(columns,
                    ElementsAre("|0|hidden|1", "Codigo|1900|C1", "Descripción|5900|Pieza", "Marca|1000|Same",
                                "Familia|1000|hidden|Filtros", "Alm|400|centred|Si",
                                "Estado|600|centred|Activo", "Fecha|1100|centred|25/07/2006"));
        EXPECT_THAT(window.ListView1.columns(), ::testing::SizeIs(4));
    });
}

TEST_F(DeletionSearch, NothingFoundClosesTheWindow) {
    EXPECT_THAT(found({}), ElementsAre("(closed)"));
    EXPECT_EQ(recordOf("message").back(),
              R"({"call":"message","text":"No hay articulos introducidos","title":)"
              R"("Borrado masivo de artículos","buttons":"ok","icon":"information"})");
}

/// Nobody can reach the window any more: the host's own end of the session closes it.
TEST_F(DeletionSearch, AnErrorLeavesTheWindowDisabled) {
    article("A");
    sql("INSERT INTO Exis (Exis_IdArt) VALUES (1)");
    sql("INSERT INTO Exis (Exis_Codart) VALUES ('A')");
    inDeletion([&](frmBorradoArticulos& window) {
        search(window);
        EXPECT_THAT(messageTexts().back(), StartsWith("Error '-2147217900' en tiempo de ejecución:\r\n\r\n"
                                                      "La subconsulta ha devuelto más de un valor"));
        EXPECT_FALSE(window.enabled() || window.unloaded() || window.cmdInicio.enabled());
        EXPECT_EQ(desktop->pointer(), PointerShape::ArrowHourglass);
        for (const std::int16_t key : {vkTab, vkReturn, vkEscape}) desktop->press(key);
        desktop->close(window);
        EXPECT_FALSE(window.unloaded());
        EXPECT_EQ(window.activeControl(), &window.cmdSalir) << "where the search's own button left it";
    });
}

TEST_F(DeletionSearch, FieldsAndKeys) {
    inDeletion([&](frmBorradoArticulos& window) {
        desktop->type(window.Text1[3], "same");
        desktop->press(vkReturn);
        EXPECT_EQ(window.activeControl(), &window.Text1[4]) << "the focus has moved when Enter is done";
        EXPECT_EQ(window.Text1[3].text() + window.Text1[4].text(), "SAMESame");
        desktop->type(window.Text1[3], "");
        desktop->press(vkTab);
        EXPECT_EQ(window.Text1[4].text(), "");

        user().choices = {std::string("otra")};
        desktop->click(window.Text1[3]);
        desktop->press(vkF1);
        EXPECT_EQ(window.Text1[3].text(), "OTRA");
        const std::size_t searches = recordOf("search").size();
        desktop->click(window.Text1[1]);
        desktop->press(vkF1);
        EXPECT_EQ(recordOf("search").size(), searches) << "only the brand is searched";

        desktop->type(window.Text1[1], "01/02/06");
        desktop->click(window.Text1[3]);
        EXPECT_EQ(window.Text1[1].text(), "01/02/2006");
        desktop->click(window.Text1[1]);
        EXPECT_EQ(window.Text1[1].text(), "01022006");

        int yields = 0;
        desktop->click(window.Text1[4]);
        user().onYielded = [&] { ++yields; };
        desktop->click(window.Text1[3]);
        EXPECT_EQ(yields, 1) << "leaving a box without a rule of its own yields";
        window.setTag("e");
        desktop->press(vkPageDown);
        EXPECT_EQ(window.tag(), "");
        EXPECT_EQ(yields, 2);
        user().onYielded = nullptr;
    });
}

/// The search disables the button that started it.
TEST_F(DeletionSearch, TheFocusMovesOnFromAControlThatCannotHaveIt) {
    article("A");
    inDeletion([&](frmBorradoArticulos& window) {
        search(window);
        EXPECT_EQ(window.activeControl(), &window.cmdSalir);
        desktop->press(vkReturn);
        EXPECT_EQ(window.activeControl(), &window.dbgDatos);
        window.dbgDatos.setEnabled(false);
        EXPECT_EQ(window.activeControl(), &window.Text1[3]) << "the last one gives it to the first";
        desktop->type(window.Text1[3], "same");
        window.Text1[3].setVisible(false);
        desktop->doEvents();
        EXPECT_EQ(window.Text1[4].text(), "Same") << "the field was left by the usual rules";
        EXPECT_EQ(window.activeControl(), &window.Text1[4]);
        EXPECT_EQ(window.Text1[4].backColor(), 65535u);
        window.cmdSalir.setEnabled(false);
        EXPECT_EQ(window.activeControl(), &window.Text1[4]);

        for (Control* control : window.controls()) control->setEnabled(false);
        EXPECT_EQ(window.activeControl(), nullptr);
        desktop->press(vkTab);
        EXPECT_EQ(window.Text1[4].backColor(), 16777215u);
        window.cmdSalir.setEnabled(true);
        desktop->press(vkReturn);
        EXPECT_EQ(window.activeControl(), &window.cmdSalir);
        desktop->press(vkEscape);
        EXPECT_TRUE(window.unloaded());
    });
}

/// No control leads to this window's own supplier search.
TEST_F(DeletionSearch, SupplierSearchThatNothingReaches) {
    sql("INSERT INTO Pro (Pro_ID,Pro_COD,Pro_NOM,Pro_comer,Pro_TIPDOC) VALUES (9,32,'Ana','Talleres',1)");
    inDeletion([&](frmBorradoArticulos& window) {
        CamposBorrado& campos = window.campos();
        std::int32_t IdPro = 0;
        const auto find = [&](std::int32_t code) {
            try {
                campos.msBuscarProveedor(code, IdPro);
                return 0;
            } catch (const RuntimeError& error) {
                return error.number();
            }
        };
        constexpr int noCodeField = static_cast<int>(ErrorNumber::ControlArrayElement);
        EXPECT_EQ(find(32), noCodeField);
        EXPECT_EQ(campos.IdProveedor, 9);
        EXPECT_THAT(record.back(), HasSubstr("PRO_comer FROM PRO WHERE  PRO_COD = 32"));
        EXPECT_EQ(find(99), noCodeField);
        EXPECT_EQ(campos.IdProveedor, 0);

        user().choices = {std::string("talleres")};
        user().replies.push_back({MessageAnswer::No});
        EXPECT_EQ(find(-1), noCodeField);
        EXPECT_EQ(IdPro, 9);
        EXPECT_EQ(campos.IdProveedor, 9);
        EXPECT_THAT(record.back(), HasSubstr("PRO_comer FROM PRO WHERE  PRO_id = 9"));
        EXPECT_EQ(recordOf("search").back(),
                  R"({"call":"search","sql":"Select PRO_ID,PRO_COD,PRO_COMER FROM PRO","column":"PRO_COMER",)"
                  R"("title":"Buscar proveedor por nombre Comercial","answer":"9\u000132\u0001Talleres"})");

        IdPro = 0;
        user().yesNo = MessageAnswer::Yes;
        EXPECT_EQ(find(-1), 0) << "nothing chosen, nothing looked up";
        EXPECT_EQ(
            recordOf("search").back(),
            R"({"call":"search","sql":"Select PRO_ID,PRO_COD,(PRO_NOM + ' ' + ISNULL(PRO_APE1,'') + ' ' )"
            R"(+ ISNULL(PRO_APE2,'')) AS RSOC FROM PRO","column":"RSOC",)"
            R"("title":"Buscar proveedor por nombre Fiscal","answer":""})");

        host().state().parametros.clear();
        EXPECT_EQ(find(32), static_cast<int>(ErrorNumber::SubscriptOutOfRange));
    });
}

}  // namespace

}  // namespace pxtarvo::test
