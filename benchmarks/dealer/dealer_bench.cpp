// The stock file, the search of articles without movements and their deletion, each through its window,
// beside the floor: the same statements prepared and bound straight on SQLite, the file's lines written by
// the C library. 200,000 articles with stock, of which 50,000 have no movements.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/measure/dealer.h"
#include "benchmarks/measure/statement.h"
#include "deletion/frm_borrado_articulos.h"
#include "devhost/dev_host.h"
#include "fields/window_texts.h"
#include "import/frm_imp_tarifas.h"
#include "stock/frm_existencias.h"

namespace pxtarvo::benchmarks {

namespace {

constexpr int articles = 200000;
constexpr int withoutMovements = 50000;

/// Codes and descriptions in another order than the identifiers, as dealers have them.
std::string rows() {
    return "INSERT INTO Fam (Fam_Id, FAM_DES) VALUES (1, 'Filtros'), (2, 'Motor');"
           "CREATE TEMP TABLE n AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
           std::to_string(articles) +
           ") SELECT i, i * 7919 % 1000003 AS shuffled FROM n;"
           "INSERT INTO Art (ART_Cod, ART_DES, ART_PVE, Art_Marca, Art_Mar, Art_Estado, Art_FechaEstado, "
           "Art_FAm) "
           "SELECT printf('0.%06d.%d', shuffled, i % 10), printf('PIEZA DE RECAMBIO %06d', shuffled), "
           "i % 9973 / 7.0, 1, 1, 0, datetime('2005-01-01', printf('+%d minutes', shuffled)), 1 + i % 2 FROM n;"
           "INSERT INTO Exis (Exis_IdArt, Exis_CodArt, Exis_alma, Exis_Cantidad) "
           "SELECT i, printf('0.%06d.%d', shuffled, i % 10), 1, i % 5 FROM n;"
           "INSERT INTO Hexis (Hexis_idArt) SELECT i FROM n WHERE i > " +
           std::to_string(withoutMovements) +
           ";"
           "INSERT INTO Lapr (Lapr_IdArt) SELECT i FROM n WHERE i > 180000;"
           "INSERT INTO Pedli (PedLi_IdArt) SELECT i FROM n WHERE i > 180000;"
           "INSERT INTO lav (lav_idart) SELECT i FROM n WHERE i > 180000;"
           "INSERT INTO Lpc (Lpc_IdArt) SELECT i FROM n WHERE i > 180000;"
           "INSERT INTO lac (lac_codart) SELECT ART_Cod FROM Art WHERE Art_Id > 180000;"
           "DROP TABLE n;";
}

/// Opens a window of the plug-in and times what `action` does in it.
template <class Opened>
Run inWindow(const std::string& database, PushButton frmImpTarifas::*button,
             const std::function<Run(devhost::DevHost&, Opened&)>& action) {
    devhost::DevHost host({.database = database});
    host.user().yesNo = MessageAnswer::Yes;
    Run run;
    host.user().onWindowShown = [&](Window& window) {
        if (auto* const import = dynamic_cast<frmImpTarifas*>(&window)) {
            host.desktop().click(import->*button);
        } else {
            run = action(host, dynamic_cast<Opened&>(window));
        }
    };
    host.run();
    return run;
}

Run stockInWindow(const std::string& database) {
    return inWindow<frmExistencias>(database, &frmImpTarifas::cmdStock,
                                    [](devhost::DevHost& host, frmExistencias& window) {
                                        host.desktop().type(window.Text1[0], pathOf("stock.txt"));
                                        host.desktop().type(window.Text1[1], "24");
                                        host.desktop().type(window.Text1[3], "SAME");
                                        const Run run = timed([&] {
                                            host.desktop().click(window.XPButton1);
                                            return static_cast<std::int64_t>(window.ProgressBar1.value());
                                        });
                                        require(host.user().lastMessageIs(sExito), "no stock file");
                                        return run;
                                    });
}

Run stockOnFloor(portable::SqliteConnection& connection) {
    return timed([&] {
        Statement all(connection.handle(),
                      "SELECT Art_Id,Art_Cod,Art_Des FROM Art WHERE Art_Marca = ?1 AND Art_Estado = 0 "
                      "ORDER BY Art_Des COLLATE DEALER");
        Statement stock(connection.handle(), "SELECT Exis_Cantidad FROM Exis WHERE Exis_IdArt = ?1");
        all.bind(std::int64_t{1});
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
            std::fopen(pathOf("floor.txt").c_str(), "wb"), std::fclose);
        std::int64_t count = 0;
        for (; all.step(); ++count) {
            stock.bind(all.whole(0));
            if (!stock.step()) continue;
            if (const double quantity = stock.number(0); quantity > 0) {
                std::fprintf(file.get(), "A24700500 %-15sDDMMYYYY%07.0f161A24700500\r\n", all.text(1).c_str(),
                             quantity);
            }
            stock.run();
        }
        return count;
    });
}

/// A second stock row is an error to the host's server, so that the floor must look for one too.
constexpr const char* search =
    "SELECT Art_Id,Art_Cod,Art_Des,(SELECT Marca_DES FROM Marcas WHERE Marca_Id = Art_Marca) AS Marca,"
    "(SELECT FAM_DES FROM Fam WHERE Fam_Id = Art_FAm) AS Familia,"
    "(SELECT CASE count(*) WHEN 0 THEN 'No' ELSE 'Si' END FROM Exis "
    "WHERE Exis_IdArt = Art_Id OR Exis_Codart COLLATE DEALER = Art_Cod),"
    "CASE WHEN Art_Estado = 0 THEN 'Activo' ELSE 'Baja' END,Art_FechaEstado FROM Art "
    "WHERE Art_Id NOT IN (SELECT Lapr_IdArt FROM Lapr GROUP BY Lapr_IdArt) "
    "AND Art_Id NOT IN (SELECT PedLi_IdArt FROM Pedli GROUP BY PedLi_IdArt) "
    "AND Art_Id NOT IN (SELECT lav_idart FROM lav GROUP BY lav_idart) "
    "AND Art_Id NOT IN (SELECT Lpc_IdArt FROM Lpc GROUP BY Lpc_IdArt) "
    "AND Art_Cod COLLATE DEALER NOT IN (SELECT lac_codart FROM lac GROUP BY lac_codart COLLATE DEALER) "
    "AND Art_Id NOT IN (SELECT Hexis_idArt FROM Hexis GROUP BY Hexis_idArt) ORDER BY Art_FechaEstado";

Run searchInWindow(const std::string& database) {
    return inWindow<frmBorradoArticulos>(
        database, &frmImpTarifas::cmdBorrado, [](devhost::DevHost& host, frmBorradoArticulos& window) {
            return timed([&] {
                host.desktop().click(window.cmdInicio);
                return static_cast<std::int64_t>(window.dbgDatos.dataSource()->RecordCount());
            });
        });
}

Run searchOnFloor(portable::SqliteConnection& connection) {
    return timed([&] {
        Statement statement(connection.handle(), search);
        std::int64_t count = 0;
        while (statement.step()) ++count;
        return count;
    });
}

Run deletionInWindow(const std::string& database) {
    return inWindow<frmBorradoArticulos>(
        database, &frmImpTarifas::cmdBorrado, [](devhost::DevHost& host, frmBorradoArticulos& window) {
            host.desktop().click(window.cmdInicio);
            const Run run = timed([&] {
                host.desktop().click(window.cmdBorrar);
                return static_cast<std::int64_t>(window.ProgressBar1.value());
            });
            require(host.user().lastMessageIs(sBorradoFinalizado), "nothing deleted");
            return run;
        });
}

Run deletionOnFloor(portable::SqliteConnection& connection) {
    std::vector<std::pair<std::int64_t, std::string>> found;
    Statement statement(connection.handle(), search);
    while (statement.step()) found.emplace_back(statement.whole(0), statement.text(1));
    return timed([&] {
        Statement article(connection.handle(), "DELETE FROM Art WHERE Art_Id = ?1");
        Statement stock(connection.handle(),
                        "DELETE FROM Exis WHERE Exis_IdArt = ?1 OR Exis_Codart COLLATE DEALER = ?2");
        connection.BeginTrans();
        for (const auto& [id, code] : found) {
            article.bind(id).run();
            stock.bind(id, code).run();
        }
        connection.CommitTrans();
        return static_cast<std::int64_t>(found.size());
    });
}

}  // namespace

}  // namespace pxtarvo::benchmarks

int main(int argc, char** argv) {
    using namespace pxtarvo::benchmarks;
    benchmark::Initialize(&argc, argv);
    createDealer(rows());
    const Comparison comparisons[] = {
        overFreshDealer("stock file", stockOnFloor, stockInWindow, articles),
        overFreshDealer("search", searchOnFloor, searchInWindow, withoutMovements),
        overFreshDealer("deletion", deletionOnFloor, deletionInWindow, withoutMovements)};
    compare(comparisons);
    return 0;
}
