// What a run does with input it cannot take: which message or error report, whether the window closes, and
// that nothing of it stays in the database.

#include <gmock/gmock.h>

#include <fstream>

#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

struct BadInput {
    const char* year;
    const char* file;         ///< a sample's name, or a path of its own
    const char* lastMessage;  ///< as a whole, or its beginning when it ends in "…"
    bool windowCloses;
};

void PrintTo(const BadInput& input, std::ostream* out) {
    *out << input.year << " " << input.file;
}

class BadLists : public Scene, public ::testing::WithParamInterface<BadInput> {};

TEST_P(BadLists, LeaveTheDatabaseAsItWas) {
    const BadInput& input = GetParam();
    createSampleDealer();
    const std::string file =
        std::string_view(input.file).find('.') != std::string_view::npos ? sample(input.file) : input.file;
    host();
    const std::string before = databaseBytes();
    bool closed = false;
    inWindow([&](frmImpTarifas& window) {
        fillIn(window, {.year = input.year, .file = file});
        press(window);
        closed = window.unloaded();
    });

    const std::string_view expected = input.lastMessage;
    ASSERT_FALSE(messageTexts().empty());
    if (expected.ends_with("…")) {
        EXPECT_THAT(messageTexts().back(), StartsWith(std::string(expected.substr(0, expected.size() - 3))));
    } else {
        EXPECT_EQ(messageTexts().back(), expected);
    }
    EXPECT_EQ(closed, input.windowCloses);
    EXPECT_EQ(recordOf("begin").size(), input.windowCloses ? 1u : 0u);
    EXPECT_EQ(recordOf("rollback").size(), input.windowCloses ? 1u : 0u);
    EXPECT_TRUE(before == databaseBytes()) << "the database changed";
}

constexpr const char* ofProvider = "Error '-2147467259' en tiempo de ejecución:\r\n\r\n…";
constexpr const char* ofTable =
    "Error '-2147217865' en tiempo de ejecución:\r\n\r\nEl motor de base de datos Microsoft Jet no pudo "
    "encontrar la tabla o consulta de entrada 'List'.…";
constexpr const char* ofColumn =
    "Registro 1. No se encontró el elemento en la colección que corresponde con el nombre o el ordinal solicitado.";

INSTANTIATE_TEST_SUITE_P(
    Files, BadLists,
    ::testing::Values(
        BadInput{"2012", "/no/such/file", ofProvider, false}, BadInput{"2012", "/", ofProvider, false},
        BadInput{"2012", "C:\\TARVO\\TARIFA2012", ofProvider, false},
        BadInput{"2012", "articulo.tdw", ofProvider, false},
        BadInput{"2012", "list-truncated.mdb", "Registro …", true},
        BadInput{"2012", "no-list-table.mdb", ofTable, false},
        BadInput{"2007", "no-list-table.mdb", ofTable, false},
        BadInput{"2012", "list-empty-table.mdb", "Error '3021' en tiempo de ejecución:…", false},
        BadInput{"2012", "list-six-columns.mdb", ofColumn, true},
        BadInput{"2012", "list-apostrophe-row-57.mdb", "Registro 57. …", true},
        BadInput{"2012", "list-empty-price-row-34.mdb", "Registro 34. Uso no válido de Null", true},
        BadInput{"2012", "list-bad-price-row-12.mdb", "Registro 12. No coinciden los tipos", true},
        BadInput{"2007", "list-null-date-row-9.mdb", "Registro 9. Uso no válido de Null", true},
        BadInput{"2008", "list-null-date-row-9.mdb", "Registro 9. Uso no válido de Null", true},
        BadInput{"2008", "list-text-date.mdb", "Registro 15. No coinciden los tipos", true}));

class BadHost : public Scene {};

TEST_F(BadHost, EmptyPathIsTheProvidersErrorAndLeavesTheWindowOpen) {
    createEmptyDealer();
    user().files.push_back(std::nullopt);
    bool open = false;
    inWindow([&](frmImpTarifas& window) {
        host().desktop().click(window.cmdFichero);  // cancelled: the release of Esc closes the window
        EXPECT_EQ(window.Text1[0].text(), "");
    });
    inWindow([&](frmImpTarifas& window) {
        host().desktop().type(window.Text1[0], "");
        press(window);
        open = !window.unloaded();
    });
    EXPECT_THAT(messageTexts().back(), StartsWith("Error '-2147467259'"));
    EXPECT_TRUE(open);
}

/// An article without a price stops the 2007 list, which reads it to no purpose; the other lists go on.
TEST_F(BadHost, EmptySellingPriceStopsOnlyTheOldestList) {
    options.makeSource = memorySource({listRow("A", 1.0, "C"), listRow("B", 2.0, "C")});
    createEmptyDealer();
    sql("INSERT INTO Art (ART_Cod,ART_PVE,Art_Mar) VALUES ('B',NULL,1)");
    import({.year = "2007"});
    EXPECT_THAT(messageTexts(), ElementsAre("Registro 2. Uso no válido de Null"));
    EXPECT_THAT(rows("SELECT Art_Cod FROM Art"), ElementsAre("B"));
    for (const char* year : {"2008", "2009", "2012"}) {
        import({.year = year});
        EXPECT_EQ(messageTexts().back(), "Proceso finalizado con exito") << year;
        EXPECT_EQ(value("SELECT ART_PVE FROM Art WHERE Art_Cod = 'B'"), "2") << year;
        sql("UPDATE Art SET ART_PVE = NULL WHERE Art_Cod = 'B'");
    }
}

/// The code fields refuse what they do not find; the import runs all the same, with identifier 0.
TEST_F(BadHost, UnknownSupplierAndBrandOnlyWarn) {
    options.makeSource = memorySource({listRow("A", 1.0, "C")});
    createEmptyDealer();
    inWindow([&](frmImpTarifas& window) {
        fillIn(window, {.supplier = "999"});
        host().desktop().type(window.Text1[3], "NADA");
        EXPECT_FALSE(host().desktop().click(window.XPButton1))
            << "the message takes the click that caused it";
        EXPECT_TRUE(host().desktop().click(window.XPButton1));
    });
    EXPECT_THAT(messageTexts(),
                ElementsAre("Codigo Proveedor no existe", "Codigo Marca no existe",
                            "Debe indicar el codigo de proveedor", "Debe indicar el codigo de la marca",
                            "stabla List", "stabla List", "Proceso finalizado con exito"));
    EXPECT_EQ(value("SELECT Art_Marca FROM Art"), "0");
    EXPECT_EQ(value("SELECT ARP_Idp FROM ArtPro"), "0");
}

/// A source that says it is not open after it was opened.
TEST_F(BadHost, SourceThatStaysClosed) {
    options.makeSource = memorySource({listRow("A", 1.0, "C")}, adStateClosed);
    createEmptyDealer();
    bool open = false;
    inWindow([&](frmImpTarifas& window) {
        press(window);
        open = !window.unloaded();
    });
    EXPECT_THAT(messageTexts(), ElementsAre("Error en la conexion con origen datos "));
    EXPECT_TRUE(open);
    EXPECT_THAT(recordOf("begin"), testing::IsEmpty());
}

/// Columns are read when they are written: a list that lacks the last one gets as far as the supplier's row.
TEST_F(BadHost, SixColumnsWithAKnownArticle) {
    createEmptyDealer();
    sql("INSERT INTO Art (ART_Cod,ART_PVE) VALUES ('S0',1)");
    import({.file = sample("list-six-columns.mdb")});
    EXPECT_EQ(recordOf("update").size(), 1u);
    EXPECT_THAT(recordOf("insert"), ElementsAre(HasSubstr("\"Aat\"")));
    EXPECT_EQ(recordOf("rollback").size(), 1u);
}

/// A database without suppliers cannot even load the window: the error reaches the caller.
TEST_F(BadHost, ErrorWhileLoadingReachesTheCaller) {
    createEmptyDealer();
    native("DROP TABLE Pro");
    try {
        host().run();
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_TRUE(error.is(ErrorNumber::NoSuchTable)) << error.number();
    }
    EXPECT_TRUE(messageTexts().empty());
}

}  // namespace

}  // namespace pxtarvo::test
