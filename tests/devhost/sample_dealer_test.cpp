#include "devhost/dealer/sample_dealer.h"

#include <gtest/gtest.h>

#include "host/tables.h"
#include "platform/portable/access/jet_connection.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

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
