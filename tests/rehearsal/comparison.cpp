#include "tests/rehearsal/comparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "platform/portable/access/jet_connection.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"
#include "tests/common/temporary_folder.h"

namespace pxtarvo::tests {

namespace {

struct Figure {
    const char* name;
    const char* sql;
};

constexpr const char* views = R"(
CREATE TABLE Lista (Fila INTEGER, Codigo TEXT PRIMARY KEY COLLATE NOCASE, Precio FLOAT);
CREATE TEMP VIEW Ambos AS SELECT d.Art_Id, d.ART_Cod, d.ART_DES, a.ART_PVE AS Antes, d.ART_PVE AS Despues,
    a.Art_Estado AS EstadoAntes, d.Art_Estado AS Estado,
    (SELECT coalesce(sum(Exis_Cantidad), 0.0) FROM despues.Exis WHERE Exis_IdArt = d.Art_Id) AS Unidades
    FROM despues.Art d JOIN antes.Art a ON a.Art_Id = d.Art_Id;
CREATE TEMP VIEW Bajas AS SELECT * FROM Ambos WHERE EstadoAntes = 0 AND Estado IS NOT 0;
CREATE TEMP VIEW Listados AS SELECT * FROM Ambos JOIN Lista ON Codigo = rtrim(ART_Cod) COLLATE NOCASE;
CREATE TEMP VIEW Nuevos AS SELECT * FROM despues.Art WHERE Art_Id NOT IN (SELECT Art_Id FROM antes.Art);
CREATE TEMP VIEW Borrados AS SELECT *,
    (SELECT coalesce(sum(Exis_Cantidad), 0.0) FROM antes.Exis WHERE Exis_IdArt = Art_Id) AS Unidades
    FROM antes.Art WHERE Art_Id NOT IN (SELECT Art_Id FROM despues.Art);
CREATE TEMP VIEW Existencias AS SELECT coalesce(a.Exis_IdArt, d.Exis_IdArt) AS Articulo,
    coalesce(a.Exis_Cantidad, 0) AS Antes, coalesce(d.Exis_Cantidad, 0) AS Despues
    FROM (SELECT Exis_Id AS Id FROM antes.Exis UNION SELECT Exis_Id FROM despues.Exis)
    LEFT JOIN antes.Exis a ON a.Exis_Id = Id LEFT JOIN despues.Exis d ON d.Exis_Id = Id
    WHERE a.Exis_Id IS NULL OR d.Exis_Id IS NULL OR a.Exis_Cantidad IS NOT d.Exis_Cantidad;
CREATE TEMP VIEW Sitios AS SELECT d.Ubi_IdArt AS Articulo, a.Ubi_Pasillo AS Antes, d.Ubi_Pasillo AS Despues
    FROM despues.Ubi d LEFT JOIN antes.Ubi a USING (Ubi_Id)
    WHERE a.Ubi_Id IS NULL OR a.Ubi_Pasillo IS NOT d.Ubi_Pasillo;
)";

constexpr Figure totalQueries[Comparison::totalsKnown] = {
    {"Artículos nuevos", "SELECT count(*) FROM Nuevos"},
    {"Con otro precio", "SELECT count(*) FROM Ambos WHERE Antes <> 0 AND Despues IS NOT Antes"},
    {"Con su primer precio",
     "SELECT count(*) FROM Ambos WHERE coalesce(Antes, 0) = 0 AND Despues IS NOT Antes"},
    {"Conservan su precio, más alto que el de la lista",
     "SELECT count(*) FROM Listados WHERE Antes = Despues AND Despues > Precio"},
    {"Vuelven a estar activos", "SELECT count(*) FROM Ambos WHERE EstadoAntes IS NOT 0 AND Estado = 0"},
    {"Dados de baja", "SELECT count(*) FROM Bajas"},
    {"Borrados", "SELECT count(*) FROM Borrados"},
    {"Filas de proveedor nuevas",
     "SELECT count(*) FROM despues.ArtPro WHERE ARP_Id NOT IN (SELECT ARP_Id FROM antes.ArtPro)"},
    {"Filas de proveedor cambiadas",
     "SELECT count(*) FROM (SELECT * FROM despues.ArtPro EXCEPT SELECT * FROM antes.ArtPro) "
     "WHERE ARP_Id IN (SELECT ARP_Id FROM antes.ArtPro)"},
    {"Textos de descuento",
     "SELECT count(*) FROM (SELECT * FROM despues.Aat EXCEPT SELECT * FROM antes.Aat)"},
    {"Ubicaciones", "SELECT count(*) FROM Sitios"},
    {"Existencias cambiadas", "SELECT count(*) FROM Existencias"},
    {"Movimientos de existencias",
     "SELECT (SELECT count(*) FROM despues.Hexis) - (SELECT count(*) FROM antes.Hexis)"},
};

constexpr Figure tableQueries[] = {
    {"precios",
     "SELECT ART_Cod, ART_DES, Antes, Despues, 100.0 * (coalesce(Despues, 0) - Antes) / abs(nullif(Antes, 0)) "
     "AS Cambio FROM Ambos WHERE Despues IS NOT Antes"},
    {"bajas", "SELECT ART_Cod, ART_DES, Despues, Unidades, Unidades * coalesce(Despues, 0) FROM Bajas"},
    {"nuevos", "SELECT ART_Cod, ART_DES, ART_PVE FROM Nuevos"},
    {"borrados", "SELECT ART_Cod, ART_DES, ART_PVE, Unidades, Unidades * coalesce(ART_PVE, 0) FROM Borrados"},
    {"existencias",
     "SELECT (SELECT ART_Cod FROM antes.Art WHERE Art_Id = Articulo), Antes, Despues FROM Existencias"},
    {"ubicaciones",
     "SELECT (SELECT ART_Cod FROM despues.Art WHERE Art_Id = Articulo), Antes, Despues FROM Sitios"},
};

std::string decimals(double value, int fewest, int most) {
    char digits[400];
    std::snprintf(digits, sizeof digits, "%.*f", most, value);
    std::string text(digits);
    for (int count = most; count > fewest && text.ends_with('0'); --count) text.pop_back();
    std::ranges::replace(text, '.', ',');
    return text;
}

std::string cell(sqlite3_stmt* row, int column) {
    switch (sqlite3_column_type(row, column)) {
        case SQLITE_NULL:
            return {};
        case SQLITE_INTEGER:
        case SQLITE_FLOAT: {
            const bool percentage = std::string_view(sqlite3_column_name(row, column)) == "Cambio";
            return percentage ? decimals(sqlite3_column_double(row, column), 1, 1)
                              : decimals(sqlite3_column_double(row, column), 2, 4);
        }
        default:
            return reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    }
}

}  // namespace

Comparison::Comparison(const std::string& before, const std::string& after) {
    sqlite3* database = nullptr;
    sqlite3_open(":memory:", &database);
    database_.reset(database);
    for (const auto& [path, name] : {std::pair(before, "antes"), std::pair(after, "despues")}) {
        portable::run(database, ("ATTACH '" + path + "' AS " + name).c_str());
    }
    portable::run(database, views);
}

void Comparison::readList(const std::string& path, std::string_view table, int pricePosition, int rows) {
    constexpr int codePosition = 1;
    const auto list = makeObject<portable::JetConnection>(portable::DrivePaths());
    list->ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path);
    list->Open("", "", adOptionUnspecified);
    const auto source = list->openRows(joined({"SELECT * FROM ", table}));
    const auto insert = portable::prepare(database_.get(), "REPLACE INTO Lista VALUES (?1, ?2, ?3)");
    for (int row = 1; row <= rows && source->next(); ++row) {
        const std::string joinedCode = joinedText(source->value(codePosition), spanishLocale());
        const std::string code(trimBlanks(joinedCode));
        sqlite3_reset(insert.get());
        sqlite3_clear_bindings(insert.get());
        sqlite3_bind_int(insert.get(), 1, row);
        sqlite3_bind_text(insert.get(), 2, code.c_str(), -1, SQLITE_STATIC);
        if (errorOf([&] {
                const double price = toDouble(source->value(pricePosition), spanishLocale());
                sqlite3_bind_double(insert.get(), 3, price);
            }) != 0) {
            sqlite3_bind_null(insert.get(), 3);
        }
        portable::step(insert.get());
    }
}

Rows Comparison::rows(std::string_view sql) const {
    Rows found;
    const auto query = portable::prepare(database_.get(), sql);
    while (portable::step(query.get())) {
        Row& row = found.emplace_back();
        for (int at = 0; at < sqlite3_column_count(query.get()); ++at) row.push_back(cell(query.get(), at));
    }
    return found;
}

double Comparison::number(std::string_view sql) const {
    const auto query = portable::prepare(database_.get(), sql);
    return portable::step(query.get()) ? sqlite3_column_double(query.get(), 0) : 0;
}

std::map<std::string, std::string> Comparison::totals() const {
    std::map<std::string, std::string> lines;
    for (const auto& [name, sql] : totalQueries) {
        if (const double count = number(sql); count != 0) lines[name] = decimals(count, 0, 0);
    }
    return lines;
}

std::map<std::string, Rows> Comparison::tables() const {
    std::map<std::string, Rows> found;
    for (const auto& [name, sql] : tableQueries) found[name] = rows(sql);
    return found;
}

}  // namespace pxtarvo::tests
