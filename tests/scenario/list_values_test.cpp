// Column types of the lists: prices, codes, groups and descriptions as the sample files hold them.

#include <gmock/gmock.h>

#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

constexpr const char* textM = "TD 15 - UR 35 - UN 40 - ST 50 - CP Neto - WR 35";
constexpr const char* textC = "TD 15 - UR 24 - UN 32 - ST 37 - CP Neto - WR 35";

struct ListCase {
    const char* year;
    const char* file;
    const char* query;
    std::vector<std::string> first;  ///< the first rows of its result
};

void PrintTo(const ListCase& one, std::ostream* out) {
    *out << one.file;
}

class ListValues : public Scene, public ::testing::WithParamInterface<ListCase> {};

TEST_P(ListValues, ArriveInTheDatabase) {
    createEmptyDealer();
    import({.year = GetParam().year, .file = sample(GetParam().file)});
    ASSERT_EQ(messageTexts().back(), "Proceso finalizado con exito");
    std::vector<std::string> found = rows(GetParam().query);
    ASSERT_GE(found.size(), GetParam().first.size());
    found.resize(GetParam().first.size());
    EXPECT_EQ(found, GetParam().first);
}

INSTANTIATE_TEST_SUITE_P(
    Samples, ListValues,
    ::testing::Values(
        ListCase{"2012",
                 "list-text-price.mdb",
                 "SELECT ART_PVE FROM Art ORDER BY Art_Id",
                 {"12,5", "1234,56", "7", "0,05", "8", "-3,5"}},
        ListCase{"2012",
                 "list-decimal-price.mdb",
                 "SELECT Arp_Precio FROM ArtPro ORDER BY ARP_Id",
                 {"12", "12,007", "12,014", "12,021"}},
        ListCase{
            "2012", "list-whole-price.mdb", "SELECT ART_PVE FROM Art ORDER BY Art_Id", {"0", "3", "6", "9"}},
        ListCase{"2012",
                 "list-numeric-code.mdb",
                 "SELECT ARP_Cop FROM ArtPro ORDER BY ARP_Id",
                 {"10000000", "20000001", "30000002"}},
        ListCase{"2012",
                 "list-numeric-group.mdb",
                 "SELECT Aat_C01 FROM Aat ORDER BY Aat_Id",
                 {textM, textC, textC, textM}},
        ListCase{"2012",
                 "list-nulls-and-empty-texts.mdb",
                 "SELECT Aat_C01 FROM Aat ORDER BY Aat_Id",
                 {"", "", textM}},
        ListCase{"2012",
                 "list-nulls-and-empty-texts.mdb",
                 "SELECT Art_Cod FROM Art WHERE Art_PVE >= 24 ORDER BY Art_Id",
                 {"N24", "NULL", "", "N27"}},
        ListCase{"2007",
                 "TARIFA2007.MDB",  // descriptions in a memo column
                 "SELECT Art_Des FROM Art ORDER BY Art_Id",
                 {"FILTRO ACEITE 0", "EJE TRANSMISIÓN 1", "RETÉN CIGÜEÑAL 2", "ANILLO SEGURIDAD 3"}},
        ListCase{"2012",
                 "TARIFA2012.MDB",
                 "SELECT Art_Des FROM Art ORDER BY Art_Id",
                 {"CASQUILLO 0", "FILTRO ACEITE 1", "ESPEJO RETROVISOR 2", "JUNTA TÓRICA 3"}}));

}  // namespace

}  // namespace pxtarvo::test
