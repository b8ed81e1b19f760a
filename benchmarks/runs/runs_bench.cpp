// The barcode list, the location update and the code correction, each through the import window, beside the
// floor. The first two begin no transaction; both sides run in one of the host's then, or the file system
// would be what is measured.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "benchmarks/measure/dealer.h"
#include "benchmarks/runs/runs_floor.h"
#include "benchmarks/runs/workbook_writer.h"
#include "devhost/dev_host.h"
#include "fields/window_texts.h"
#include "import/article_file.h"
#include "import/frm_imp_tarifas.h"
#include "import/run_texts.h"

namespace pxtarvo::benchmarks {

namespace {

constexpr int barcodeRows = 50000;
constexpr int articleLines = 100000;
constexpr int twins = 20000;

/// Codes in another order than the identifiers, as dealers have them.
std::string codeOf(int article) {
    char code[16];
    std::snprintf(code, sizeof code, "0.%06d.%d", static_cast<int>(article * 7919LL % 1000003), article % 10);
    return code;
}

/// Articles for every line of the article file, a quarter each with a place, with one that lost its aisle,
/// and without (twice); stock for twice as many codes with and without a leading zero as there are twins.
std::string dealerRows() {
    const auto upTo = [](int last) {
        return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
               std::to_string(last) + ") ";
    };
    return upTo(articleLines) +
           "INSERT INTO Art (ART_Cod, ART_DES, ART_PVE, Art_Mar, Art_Estado, Art_barCode) SELECT "
           "printf('0.%06d.%d', i * 7919 % 1000003, i % 10), printf('PIEZA DE RECAMBIO %06d', i), i / 7.0, 1, "
           "0, CAST(8410000000000 + i AS TEXT) FROM n;"
           "INSERT INTO ArtPro (ARP_Ida, ARP_Idp, ARP_Cop) SELECT Art_Id, 4, ART_Cod FROM Art;"
           "INSERT INTO Ubi (Ubi_IdArt, Ubi_IdAlm, Ubi_Pasillo) SELECT Art_Id, 1, CASE WHEN Art_Id % 4 = 1 THEN "
           "'B7' END FROM Art WHERE Art_Id % 4 < 2;" +
           upTo(twins) +
           "INSERT INTO Art (ART_Cod, ART_DES) SELECT CAST(i * 7919 % 1000003 + 1000003 AS TEXT), 'PIEZA' FROM "
           "n "
           "UNION ALL SELECT printf('0%d', i * 7919 % 1000003 + 1000003), 'PIEZA' FROM n;"
           "INSERT INTO ArtPro (ARP_Ida, ARP_Idp) SELECT Art_Id, 4 FROM Art WHERE ART_DES = 'PIEZA';"
           "INSERT INTO Exis (Exis_IdArt, Exis_CodArt, Exis_alma, Exis_Cantidad, Exis_Kg) SELECT Art_Id, "
           "ART_Cod, 1, 1 + Art_Id % 9, 0 FROM Art WHERE ART_DES = 'PIEZA' AND (ART_Cod NOT LIKE '0%' OR Art_Id "
           "% 2 = 0);";
}

/// A fifth each with a known barcode and with a known code, the others new.
void writeWorkbook() {
    std::string cells;
    for (int row = 0; row < barcodeRows; ++row) {
        const int kind = row % 5;
        const int article = row + 1;
        cells += textCell(row, 0, kind == 1 ? codeOf(article) : "AMA" + std::to_string(row));
        cells += textCell(row, 1, "  PIEZA DE RECAMBIO " + std::to_string(row));
        cells += numberCell(row, 2, (kind == 0 ? 8410000000000.0 : 8420000000000.0) + article);
    }
    saveWorkbook(pathOf("barcodes.xls"), cells);
}

void writeArticleFile(const std::string& path, int lines) {
    std::ofstream file(path, std::ios::binary);
    for (int line = 1; line <= lines; ++line) {
        std::string text = std::to_string(line);
        for (int field = 1; field < 24; ++field) {
            text += '\x01';
            if (field == 3) text += "TARVO";
            if (field == 17) text += codeOf(line);
            if (field == 18) text += "P-04   ";
            if (field == 20) text += "2.5";
        }
        file << text << "\r\n";
    }
}

struct Task {
    const char* title;
    std::int64_t (*floor)(portable::SqliteConnection& connection);
    PushButton frmImpTarifas::*button;
    std::string success;
    std::int64_t items;
    bool inHostsTransaction;
};

const Task tasks[] = {
    {"barcode list",
     [](portable::SqliteConnection& connection) {
         return barcodesOnFloor(connection, pathOf("barcodes.xls"));
     },
     &frmImpTarifas::XPButton1, std::string(sExito), barcodeRows, true},
    {"location update",
     [](portable::SqliteConnection& connection) {
         return locationsOnFloor(connection, pathOf("articulo.tdw"));
     },
     &frmImpTarifas::XPButton4, textoUbicacionesLeidas(), articleLines, true},
    {"code correction", correctionOnFloor, &frmImpTarifas::XPButton3, std::string(sCorreccionConcluida),
     twins, false},
};

/// Presses the task's button, the window opened and filled in before.
Run inWindow(const std::string& database, const Task& task,
             const std::string& articleFile = pathOf("articulo.tdw")) {
    devhost::DevHost host({.database = database, .articleFile = articleFile});
    host.user().yesNo = MessageAnswer::Yes;
    if (task.inHostsTransaction) host.connection()->BeginTrans();
    Run run;
    host.user().onWindowShown = [&](Window& shown) {
        auto& window = dynamic_cast<frmImpTarifas&>(shown);
        host.desktop().choose(window.Combo1, "2008");
        host.desktop().click(window.Option1[1]);
        host.desktop().type(window.Text1[0], pathOf("barcodes.xls"));
        run = timed([&] {
            host.desktop().click(window.*task.button);
            return task.items;
        });
    };
    host.run();
    require(host.user().lastMessageIs(task.success), "the run did not come to its end");
    return run;
}

Comparison comparison(const Task& task) {
    const auto onFloor = [&task](portable::SqliteConnection& connection) {
        if (task.inHostsTransaction) connection.BeginTrans();
        return timed([&] { return task.floor(connection); });
    };
    return overFreshDealer(
        task.title, onFloor, [&task](const std::string& database) { return inWindow(database, task); },
        task.items);
}

/// Of the location update from a file of so many lines.
void printPeakMemory(int lines) {
    const std::string file = pathOf("lines.tdw");
    writeArticleFile(file, lines);
    const double memory = peakMemory([&] { inWindow(freshDealer(), tasks[1], file); });
    std::printf("peak memory of the location update from %d lines: %.1f MB\n", lines, memory);
}

}  // namespace

}  // namespace pxtarvo::benchmarks

int main(int argc, char** argv) {
    using namespace pxtarvo::benchmarks;
    benchmark::Initialize(&argc, argv);
    createDealer(dealerRows());
    printPeakMemory(articleLines / 10);
    printPeakMemory(articleLines);
    writeWorkbook();
    writeArticleFile(pathOf("articulo.tdw"), articleLines);
    std::vector<Comparison> comparisons;
    for (const Task& task : tasks) comparisons.push_back(comparison(task));
    compare(comparisons);
    return 0;
}
