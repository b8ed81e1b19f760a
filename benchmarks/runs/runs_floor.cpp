#include "benchmarks/runs/runs_floor.h"

#include <cmath>
#include <vector>

#include "benchmarks/measure/statement.h"
#include "platform/portable/files/sequential_files.h"
#include "platform/portable/workbook/workbook_reader.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"

namespace pxtarvo::benchmarks {

namespace {

constexpr std::int64_t supplier = 4;
constexpr std::string_view now = "2012-07-25 10:30:00";

}  // namespace

std::int64_t barcodesOnFloor(portable::SqliteConnection& connection, const std::string& workbook) {
    sqlite3* db = connection.handle();
    Statement retire(db, "UPDATE Art SET Art_Estado=1, Art_FechaEstado=?1 WHERE Art_Estado=0 AND Art_Mar=1");
    Statement findBarcode(db, "SELECT * FROM Art WHERE Art_barCode COLLATE DEALER = ?1");
    Statement findCode(db, "SELECT * FROM Art WHERE Art_Cod COLLATE DEALER = ?1");
    Statement insertArticle(
        db,
        "INSERT INTO Art "
        "(ART_Cod,ART_DES,Art_barCode,Art_Mar,ART_PVE,Art_Estado,Art_FechaEstado,ART_PCO,ART_Rod,ART_Pas,"
        "ART_Mat,ART_TIPO,Art_Alma) VALUES (?1,?2,?3,1,0,0,dealer_now(),0,0,0,0,1,1)");
    Statement newestArticle(db, "SELECT MAX(Art_Id) FROM Art");
    Statement findPrice(db, "SELECT * FROM ArtPro WHERE ARP_Ida = ?1 AND ARP_Idp = ?2");
    Statement insertPrice(db,
                          "INSERT INTO ArtPro (ARP_des,Arp_Precio,Arp_Descuento,ARP_Cop,ARP_Idp,ARP_Ida) "
                          "VALUES (?1,0,0,?2,?3,?4)");

    retire.bind(now).run();
    const auto sheet = portable::WorkbookReader(portable::DrivePaths()).OpenWorkbook(workbook)->Sheet(1);
    std::int64_t article = 0;
    std::int32_t row = 1;
    for (;; ++row) {
        const auto cell = [&](std::int32_t column) {
            return joinedText(sheet->Cells(row, column), spanishLocale());
        };
        std::string code = cell(1);
        if (trimBlanks(code).empty()) break;
        const std::string description = replaced(trimBlanks(cell(2)), "'", "");
        const std::string barcode(trimBlanks(cell(3)));
        if (findBarcode.bind(barcode).found() == 0) {
            article = 0;
            if (findCode.bind(code).found() != 0) code = barcode;
        }
        if (article == 0) {
            insertArticle.bind(code, description, barcode).run();
            article = newestArticle.found();
        }
        if (findPrice.bind(article, supplier).found() != 0) continue;
        insertPrice.bind(description, code, supplier, article).run();
    }
    return row - 1;
}

std::int64_t locationsOnFloor(portable::SqliteConnection& connection, const std::string& articleFile) {
    sqlite3* db = connection.handle();
    Statement findArticle(db, "SELECT Art_Id FROM Art WHERE Art_Cod COLLATE DEALER = ?1");
    Statement findPlace(db, "SELECT * FROM Ubi WHERE Ubi_IdArt = ?1");
    Statement insertPlace(db,
                          "INSERT INTO Ubi (Ubi_IdArt,Ubi_IdAlm,Ubi_Pasillo,Ubi_ExMin) VALUES (?1,1,?2,?3)");
    Statement updatePlace(db, "UPDATE Ubi SET Ubi_Pasillo=?1,Ubi_ExMin=?2 WHERE Ubi_Id=?3");
    const int aisleColumn = findPlace.columnNamed("Ubi_Pasillo");

    portable::SequentialFiles files;
    files.openForInput(1, articleFile);
    std::int64_t lines = 0;
    for (; !files.atEnd(1); ++lines) {
        const std::string line = files.lineInput(1);
        const std::vector<std::string_view> fields = split(line, '\x01');
        const std::string_view aisle = firstCharacters(trimTrailingBlanks(fields.at(18)), 20);
        if (aisle.empty()) continue;
        const std::int64_t article = findArticle.bind(fields[17]).found();
        if (article == 0) continue;
        std::int64_t place = 0;
        int places = 0;
        bool filled = false;
        for (findPlace.bind(article); findPlace.step(); ++places) {
            place = findPlace.whole(0);
            filled = !trimBlanks(findPlace.text(aisleColumn)).empty();
        }
        if (places == 1 && filled) continue;
        const double minimum = toDouble(replaced(fields.at(20), ".", ","), spanishLocale());
        if (places == 1) {
            updatePlace.bind(aisle, minimum, place).run();
        } else {
            insertPlace.bind(article, aisle, minimum).run();
        }
    }
    files.close(1);
    return lines;
}

std::int64_t correctionOnFloor(portable::SqliteConnection& connection) {
    sqlite3* db = connection.handle();
    Statement findRows(db,
                       "SELECT Art_Id,Art_Cod,Exis_Id,Exis_alma,Exis_Cantidad FROM Art "
                       "INNER JOIN Exis ON Exis_IdArt = Art_Id "
                       "WHERE substr(Art_Cod,1,1) COLLATE DEALER <> '0' "
                       "AND Art_Cod COLLATE DEALER = replace(Art_Cod,'.','A') AND Art_Id IN "
                       "(SELECT ARP_Ida FROM ArtPro WHERE ARP_Idp = 4)");
    Statement findTwin(db, "SELECT * FROM Art WHERE Art_Cod COLLATE DEALER = ?1");
    Statement findStock(db, "SELECT * FROM Exis WHERE Exis_IdArt = ?1");
    Statement insertStock(
        db,
        "INSERT INTO Exis "
        "(Exis_alma,Exis_CodArt,Exis_Des,Exis_For,Exis_Fentrada,Exis_Pro,Exis_Cantidad,Exis_Largo,"
        "Exis_Ancho,Exis_Espesor,Exis_DMext,Exis_DMint,Exis_Lpc,Exis_Lac,Exis_Kg,Exis_Kill,Exis_IdArt,"
        "Exis_Lote,Exis_KgReal) VALUES (?1,?2,?3,0,dealer_now(),0,?4,0,0,0,0,0,0,0,?4,0,?5,'',0)");
    Statement newestStock(db, "SELECT MAX(Exis_Id) FROM Exis");
    Statement updateStock(
        db, "UPDATE Exis SET Exis_Fentrada=dealer_now(),Exis_Cantidad=?1,Exis_Kg=?1 WHERE Exis_Id=?2");
    Statement insertHistory(
        db,
        "INSERT INTO Hexis "
        "(Hexis_Tipo,Hexis_alma,Hexis_idArt,Hexis_Fecha,Hexis_Cantidad,Hexis_Unidades,Hexis_Importe,"
        "Hexis_Lac,Hexis_Lav,Hexis_Com,Hexis_For,Hexis_Fac,Hexis_Largo,Hexis_Ancho,Hexis_Espesor,"
        "Hexis_DMext,Hexis_DMint,Hexis_Precio,Hexis_Usu,Hexis_Exis,Hexis_Lma) "
        "VALUES (?1,?2,?3,dealer_now(),?4,?4,0,0,0,?5,0,1,0,0,0,0,0,0,1,?6,0)");
    const int codeColumn = findTwin.columnNamed("ART_Cod");
    const int nameColumn = findTwin.columnNamed("ART_DES");
    const int quantityColumn = findStock.columnNamed("Exis_Cantidad");
    struct Row {
        std::int64_t article;
        std::string code;
        std::int64_t stock;
        std::int64_t warehouse;
        double quantity;
    };
    std::vector<Row> rows;
    while (findRows.step()) {
        rows.push_back(
            {findRows.whole(0), findRows.text(1), findRows.whole(2), findRows.whole(3), findRows.number(4)});
    }
    const auto history = [&](double quantity, bool entry, const Row& row, std::int64_t article,
                             std::string_view comment, std::int64_t stock) {
        insertHistory
            .bind(std::string_view(entry ? "E" : "S"), row.warehouse, article, quantity, comment, stock)
            .run();
    };
    connection.BeginTrans();
    for (const Row& row : rows) {
        const std::string twinCode = "0" + row.code;
        findTwin.bind(twinCode);
        if (!findTwin.step()) continue;
        const std::int64_t twin = findTwin.whole(0);
        const std::string code = findTwin.text(codeColumn);
        const std::string name = findTwin.text(nameColumn);
        findTwin.run();
        findStock.bind(twin);
        std::int64_t stock = 0;
        double total = row.quantity;
        std::string_view comment;
        if (findStock.step()) {
            stock = findStock.whole(0);
            total += findStock.number(quantityColumn);
            findStock.run();
            updateStock.bind(total, stock).run();
            comment = "Actualizacion desde codigo de articulo sin cero a con cero";
        } else {
            insertStock.bind(row.warehouse, code, name, row.quantity, twin).run();
            stock = newestStock.found();
            comment = "Nuevo registro de existencias para articulo con codigo cero. origen articulo sin cero";
        }
        history(total, total > 0, row, twin, comment, stock);
        updateStock.bind(0.0, row.stock).run();
        history(std::abs(row.quantity), row.quantity <= 0, row, row.article,
                "Actualizacion de existencias a cero del articulo sin cero", row.stock);
    }
    connection.CommitTrans();
    return static_cast<std::int64_t>(rows.size());
}

}  // namespace pxtarvo::benchmarks
