#pragma once

// A small host database for the tests of the SQL connection, and results written as text.

#include <string>
#include <string_view>

#include "platform/client_recordset.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::portable {

class StoppedClock final : public Clock {
  public:
    CalendarTime now() const override { return {2026, 11, 22, 9, 5, 7}; }
};
inline const StoppedClock stoppedClock;

/// Articles 7 ("0100123"), 8 ("1234"), 9 ("Niño"), 10 ("A.B"), all of brand 12 but the last, and what belongs
/// to them.
inline constexpr const char* testTables = R"sql(
CREATE TABLE Art (Art_Id INTEGER PRIMARY KEY AUTOINCREMENT, Art_Cod VARCHAR(30), Art_Des VARCHAR(60), Art_Pve FLOAT,
    Art_Marca INTEGER, Art_Mar INTEGER, Art_Estado TINYINT DEFAULT 0, Art_FechaEstado DATETIME, Art_FAm INTEGER,
    Art_barCode VARCHAR(20), Art_Alma SMALLINT);
CREATE INDEX Art_ByCode ON Art (Art_Cod COLLATE DEALER);
CREATE TABLE ArtPro (ARP_Id INTEGER PRIMARY KEY AUTOINCREMENT, ARP_Ida INTEGER, ARP_Idp INTEGER, ARP_des VARCHAR(60));
CREATE TABLE Exis (Exis_Id INTEGER PRIMARY KEY AUTOINCREMENT, Exis_IdArt INTEGER, Exis_Codart VARCHAR(30),
    Exis_alma SMALLINT, Exis_Cantidad FLOAT, Exis_Kill BIT, Exis_Fentrada DATETIME);
CREATE TABLE Marcas (Marca_ID INTEGER PRIMARY KEY, Marca_Des VARCHAR(40), Marca_CodAbrev VARCHAR(6));
CREATE TABLE Fam (Fam_Id INTEGER PRIMARY KEY, FAM_DES VARCHAR(40));
CREATE TABLE Lapr (Lapr_IdArt INTEGER);
CREATE TABLE lav (lav_idart INTEGER);
CREATE TABLE Lpc (Lpc_IdArt INTEGER);
CREATE TABLE lac (lac_codart VARCHAR(30));
CREATE TABLE Hexis (Hexis_idArt INTEGER);
INSERT INTO Art (Art_Id, Art_Cod, Art_Des, Art_Pve, Art_Marca, Art_Mar, Art_Estado, Art_FechaEstado, Art_FAm) VALUES
    (7, '0100123', 'tuerca', 10.5, 12, 1, 0, '2006-07-25 23:59:59', 1),
    (8, '1234', 'Bulón', 3, 12, 1, 0, '2006-07-26 00:00:00', NULL),
    (9, 'Niño', 'Ñandú', NULL, 12, 2, 1, '2005-01-02 00:00:00', 1),
    (10, 'A.B', 'arandela', 1, 5, 1, 0, NULL, 2);
INSERT INTO ArtPro (ARP_Ida, ARP_Idp) VALUES (8, 4), (9, 4), (10, 4), (7, 24);
INSERT INTO Exis (Exis_IdArt, Exis_Codart, Exis_alma, Exis_Cantidad, Exis_Kill) VALUES
    (8, 'other', 2, 5.0, 0), (9, 'NIÑO  ', 1, -2.5, 1);
INSERT INTO Marcas VALUES (5, 'Cinco', 'C'), (12, 'Same', 'SAME');
INSERT INTO Fam VALUES (1, 'Tornillos');
)sql";

inline ObjectRef<SqliteConnection> testDatabase(const std::string& path = ":memory:") {
    auto connection = SqliteConnection::create(path, stoppedClock);
    connection->runNative(testTables);
    return connection;
}

/// Texts and numbers as they are, Null as "-", a date as "d" and its days.
inline std::string shown(const Variant& value) {
    if (value.isNull()) return "-";
    if (const auto* text = value.get<std::string>()) return *text;
    if (const auto* date = value.get<Date>()) return "d" + std::to_string(date->days).substr(0, 7);
    if (const auto* number = value.get<std::int32_t>()) return std::to_string(*number);
    if (const auto* number = value.get<std::int16_t>()) return std::to_string(*number);
    if (const auto* number = value.get<double>()) return std::to_string(*number).substr(0, 4);
    return "?";
}

/// Rows ended by ";", values parted by "|"; "closed" for a closed result, "number: description" for an error.
inline std::string outcome(SqliteConnection& connection, std::string_view sql) {
    try {
        const ObjectRef<Recordset> result = connection.Execute(sql, adOptionUnspecified);
        if (result->State() == adStateClosed) return "closed";
        std::string text;
        for (; !result->Eof(); result->MoveNext()) {
            for (std::int32_t column = 0; column < result->FieldCount(); ++column) {
                text += (column > 0 ? "|" : "") + shown(result->Fields(column));
            }
            text += ";";
        }
        return text;
    } catch (const RuntimeError& error) {
        return std::to_string(error.number()) + ": " + error.what();
    }
}

struct StatementCase {
    std::string_view sql;
    std::string_view outcome;
};

}  // namespace pxtarvo::portable
