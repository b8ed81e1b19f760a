// The whole import of a yearly list through the window, beside the floor, in one process and run: a first
// import into an empty dealer's database and a second one over what the first left. What is compared is the
// processor time, which other programs on the machine disturb least, and each import with the floor's run
// right before it.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/measure/dealer.h"
#include "benchmarks/measure/statement.h"
#include "devhost/dev_host.h"
#include "fields/window_texts.h"
#include "import/discount_codes.h"
#include "import/frm_imp_tarifas.h"
#include "platform/portable/access/jet_connection.h"
#include "platform/portable/clocks.h"
#include "platform/values/conversion.h"

namespace pxtarvo::benchmarks {

namespace {

std::string listPath;

constexpr std::int64_t supplier = 4;
constexpr std::int64_t brand = 1;
constexpr std::string_view now = "2012-07-25 10:30:00";

std::int64_t importThroughWindow(const std::string& database) {
    devhost::DevHost host({.database = database});
    std::int64_t rows = 0;
    host.user().onWindowShown = [&](Window& window) {
        auto& tarifas = dynamic_cast<frmImpTarifas&>(window);
        host.desktop().type(tarifas.Text1[0], listPath);
        host.desktop().click(tarifas.XPButton1);
        rows = static_cast<std::int64_t>(tarifas.ProgressBar1.value());
    };
    host.run();
    require(host.user().lastMessageIs(sExito), "the import did not come to its end");
    return rows;
}

/// The least that it can cost, as supplier 4 and brand 1: its statements prepared once and bound, straight on
/// SQLite, the list read through the plug-in's own reader.
std::int64_t importOnFloor(const std::string& database) {
    const portable::SystemClock clock;
    const auto connection = portable::SqliteConnection::open(database, clock);
    sqlite3* db = connection->handle();
    const Locale& locale = spanishLocale();

    Statement retire(db,
                     "UPDATE Art SET Art_Estado=1, Art_FechaEstado=?1 WHERE Art_Estado=0 AND Art_Marca=1");
    Statement findArticle(db, "SELECT * FROM Art WHERE Art_Cod COLLATE DEALER = ?1");
    Statement updateArticle(
        db,
        "UPDATE Art SET ART_PVE=?1,Art_Estado=0,Art_FechaEstado=dealer_now(),Art_Cal=11,Art_Marca=?2 "
        "WHERE Art_Id=?3");
    Statement insertArticle(
        db,
        "INSERT INTO Art "
        "(ART_PVE,Art_Estado,Art_FechaEstado,Art_Cal,Art_Marca,ART_Cod,ART_DES,ART_PCO,ART_Rod,ART_Pas,"
        "ART_Mat,ART_TIPO,Art_Alma) VALUES (?1,0,dealer_now(),11,?2,?3,?4,0,0,0,0,1,1)");
    Statement newestArticle(db, "SELECT MAX(Art_Id) FROM Art");
    Statement findData(db, "SELECT * FROM Aat WHERE Aat_id = ?1");
    Statement updateData(db, "UPDATE Aat SET Aat_C01=?1 WHERE Aat_Id=?2");
    Statement insertData(db, "INSERT INTO Aat (Aat_Id,Aat_C01) VALUES (?1,?2)");
    Statement findPrice(db, "SELECT * FROM ArtPro WHERE ARP_Ida = ?1 AND ARP_Idp = ?2");
    Statement updatePrice(db, "UPDATE ArtPro SET ARP_des=?1,Arp_Precio=?2,Arp_Descuento=0 WHERE ARP_Id=?3");
    Statement insertPrice(db,
                          "INSERT INTO ArtPro (ARP_des,Arp_Precio,Arp_Descuento,ARP_Cop,ARP_Idp,ARP_Ida) "
                          "VALUES (?1,?2,0,?3,?4,?5)");
    const int currentPrice = findArticle.columnNamed("ART_PVE");

    portable::JetConnection source{portable::DrivePaths()};
    source.ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + listPath +
                            ";Persist Security Info=False");
    source.Open("", "", adOptionUnspecified);
    source.openRows("SELECT count(*) FROM List")->next();
    const auto rows = source.openRows("SELECT * FROM List");

    connection->BeginTrans();
    retire.bind(now).run();
    std::int64_t count = 0;
    std::string_view discount;
    for (; rows->next(); ++count) {
        const Variant code = trimmed(rows->value(1), locale);
        const double price = toDouble(rows->value(3), locale);
        const Variant group = trimmed(rows->value(5), locale);
        const Variant description = trimmed(rows->value(9), locale);

        std::int64_t article = 0;
        double sellingPrice = price;
        findArticle.bind(code);
        if (findArticle.step()) {
            article = findArticle.whole(0);
            const double current = findArticle.number(currentPrice);
            if (!findArticle.isNull(currentPrice) && price < current) sellingPrice = current;
            findArticle.run();
        }
        if (article != 0) {
            updateArticle.bind(sellingPrice, brand, article).run();
        } else {
            insertArticle.bind(sellingPrice, brand, code, description).run();
            article = newestArticle.found();
        }
        if (const auto text = textoDescuento(joinedText(group, locale))) discount = *text;
        if (findData.bind(article).found() != 0) {
            updateData.bind(discount, article).run();
        } else {
            insertData.bind(article, discount).run();
        }
        const std::int64_t row = findPrice.bind(article, supplier).found();
        if (row != 0) {
            updatePrice.bind(description, price, row).run();
        } else {
            insertPrice.bind(description, price, code, supplier, article).run();
        }
    }
    connection->CommitTrans();
    return count;
}

using Import = std::int64_t (*)(const std::string& database);

/// Of the second of two runs, or of the first one.
Run runOf(Import import, bool second) {
    const std::string database = freshDealer();
    if (second) import(database);
    return timed([&] { return import(database); });
}

}  // namespace

}  // namespace pxtarvo::benchmarks

int main(int argc, char** argv) {
    using namespace pxtarvo::benchmarks;
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::cerr << "usage: pxtarvo-bench LIST [--benchmark_...]\n";
        return 2;
    }
    listPath = argv[1];
    createDealer();
    const double memory = peakMemory([] { importThroughWindow(freshDealer()); });
    std::vector<Comparison> comparisons;
    for (const bool second : {false, true}) {
        comparisons.push_back({second ? "second run" : "first run",
                               [=] { return runOf(importOnFloor, second); },
                               [=] { return runOf(importThroughWindow, second); }});
    }
    compare(comparisons);
    std::printf("peak memory of the first run: %.0f MB\n", memory);
    return 0;
}
