#include "devhost/dealer/sample_dealer.h"

#include <gmock/gmock.h>

#include "host/tables.h"
#include "platform/portable/access/jet_connection.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

using ::testing::ElementsAre;
using ::testing::Gt;
using ::testing::SizeIs;

TEST(SampleDealer, StandsInTheSampleListWithEveryKindOfPrice) {
    const HostFolder host(true);
    const auto list = makeObject<portable::JetConnection>(portable::DrivePaths());
    list->ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + sample("TARIFA2012.MDB"));
    list->Open("", "", adOptionUnspecified);
    const auto rows = list->openRows("SELECT * FROM List");
    int lower = 0, equal = 0, higher = 0, none = 0;
    while (rows->next()) {
        const std::string code = joinedText(trimmed(rows->value(1), spanishLocale()), spanishLocale());
        const auto found =
            host.connection->Execute("SELECT ART_PVE FROM Art WHERE Art_Cod = '" + code + "'", -1);
        if (found->RecordCount() == 0) continue;
        const Variant own = found->Fields(0);
        if (own.isNull()) {
            ++none;
            continue;
        }
        const double difference = *own.get<double>() - *rows->value(3).get<double>();
        (difference < 0 ? lower : difference > 0 ? higher : equal)++;
    }
    EXPECT_GT(lower, 100);
    EXPECT_GT(equal, 100);
    EXPECT_GT(higher, 100);
    EXPECT_GT(none, 50);
}

TEST(SampleDealer, SuitsEveryStatementOfTheWindows) {
    const HostFolder host(true);
    EXPECT_THAT(host.rows("SELECT count(*) FROM Art"), ElementsAre("1000"));
    EXPECT_THAT(host.rows("SELECT count(*) FROM Art GROUP BY Art_Cod ORDER BY count(*) DESC").front(), "1");
    EXPECT_THAT(
        host.rows("Select Pro_ID,(isnull((CASE WHEN Pro_TIPDOC =0 THEN Pro_NOM ELSE Pro_Nom + ' ' + "
                  "Pro_APE1 + ' ' + Pro_APE2 END),Pro_comer)) as Pro_Nom "
                  "FROM Pro where Pro_COD IN (12, 11, 24)"),
        ElementsAre("2|José Muñoz Íñiguez", "3|El Tractorista", "4|Recambios Ibéricos de Tractor, S.A."));
    // Codes without the leading zero whose twin with it exists.
    EXPECT_THAT(host.rows("select Art_Id from art INNER JOIN EXIS ON EXIS_IDART = ART_ID "
                          "WHERE substring(art_cod,1,1)<>'0' AND art_cod = replace(art_cod,'.','A') "
                          "AND '0' + art_cod in (SELECT Art_Cod FROM Art) "
                          "AND art_id in(SELECT ArP_Ida FROM ArtPro WHERE ArP_Idp = 4)"),
                SizeIs(Gt(30u)));
    EXPECT_THAT(host.rows("SELECT Exis_IdArt FROM Exis GROUP BY Exis_IdArt HAVING count(*) > 1"),
                SizeIs(Gt(10u)));
    // The search of articles without movements: it fails on an article with two stock rows.
    EXPECT_THAT(host.rows("SELECT Art_Id,ISNULL((SELECT 'Si' FROM Exis "
                          "WHERE Exis_IdArt = Art_Id OR Exis_Codart = Art_Cod),'No') AS Almacen FROM Art "
                          "WHERE Art_Id NOT IN (SELECT Lapr_IdArt FROM Lapr GROUP BY Lapr_IdArt) "
                          "AND art_id NOT IN (SELECT PedLi_IdArt FROM Pedli GROUP BY PedLi_IdArt) "
                          "AND art_id not in (select lav_idart from lav group by lav_idart) "
                          "AND Art_Id NOT IN (SELECT Lpc_IdArt FROM Lpc GROUP BY Lpc_IdArt) "
                          "AND art_cod not in (select lac_codart from lac group by lac_codart) "
                          "AND Art_Id NOT IN (SELECT Hexis_idArt FROM Hexis GROUP BY Hexis_idArt)"),
                SizeIs(750));
}

TEST(HostFile, IsMadeOnceAndReadByTheSqliteTool) {
    const HostFolder host(true);
    EXPECT_EQ(errorOf([&] { devhost::createHostFile(host.path(), hostClock, false); }), 58);
    EXPECT_NE(errorOf([&] { devhost::createHostFile(host.folder.file("no/x.db"), hostClock, false); }), 0);
    std::string script;
    for (const Tabla& table : tablasHost) {
        script.append("SELECT count(*) FROM ").append(table.sNombre).append(";");
        for (const Columna& column : table.columnas) {
            script.append("SELECT ").append(column.sNombre).append(" FROM ").append(table.sNombre);
            script.append(" ORDER BY 1;");
        }
    }
    EXPECT_EQ(std::system(("sqlite3 '" + host.path() + "' '" + script + "' > /dev/null").c_str()), 0);
}

}  // namespace

}  // namespace pxtarvo::tests
