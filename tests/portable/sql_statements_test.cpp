// The dialect around the statements of the plug-in, which the scenarios run, and what it refuses.

#include <gtest/gtest.h>

#include "tests/portable/sql_test_database.h"

namespace pxtarvo::portable {
namespace {

void expectOutcomes(SqliteConnection& connection, std::initializer_list<StatementCase> cases) {
    for (const StatementCase& one : cases) EXPECT_EQ(outcome(connection, one.sql), one.outcome) << one.sql;
}

TEST(SqlStatements, DialectBeyondThePlugIn) {
    const auto connection = testDatabase();
    expectOutcomes(
        *connection,
        {
            {"SELECT a.Art_Id, [m].[Marca_Des] FROM Art AS a "
             "LEFT JOIN Marcas m ON m.Marca_ID = a.Art_FAm WHERE (a.Art_Id BETWEEN 7 "
             "AND 8 OR a.Art_Cod IN ('a.b','x')) AND NOT a.Art_Id = 8 ORDER BY 1 DESC",
             "10|-;7|-;"},
            {"SELECT TOP 2 Art_Id FROM Art ORDER BY Art_Id DESC", "10;9;"},
            {"SELECT Art_Id FROM Art WHERE Art_Pve IS NOT NULL AND EXISTS (SELECT * FROM Exis "
             "WHERE Exis_IdArt = Art_Id)",
             "8;"},
            {"SELECT Art_Marca, count(*) AS n, max(Art_Cod) FROM Art GROUP BY Art_Marca HAVING count(*) > 1",
             "12|3|Niño;"},
            {"SELECT (SELECT DISTINCT ARP_Idp FROM ArtPro WHERE ARP_Idp = 4), (SELECT max(ARP_Idp) "
             "FROM ArtPro)",
             "4|24;"},
            {"SELECT (SELECT Art_Marca FROM Art GROUP BY Art_Marca)",
             "-2147217900: La subconsulta ha devuelto más de un valor, lo que no es correcto cuando va a "
             "continuación de =, !=, <, <=, >, >= o cuando se utiliza como expresión."},
            {"SELECT (SELECT Marca_Des FROM Marcas WHERE Marca_ID = Marca_ID)",
             "-2147217900: La subconsulta ha devuelto más de un valor, lo que no es correcto cuando va a "
             "continuación de =, !=, <, <=, >, >= o cuando se utiliza como expresión."},
            {"SELECT 2 - -3 * 2, 7 / 2, 'a' + 'b' /* both */ -- sum", "8|3|ab;"},
            {"SELECT CASE Art_Cod WHEN 'NIÑO' THEN 1 ELSE 2.5 END FROM Art WHERE Art_Id >= 9", "1;2.50;"},
            {"INSERT INTO Lpc VALUES (1), (2);", "closed"},
            {"INSERT INTO Lpc (Lpc_IdArt) SELECT Art_Id FROM Art WHERE Art_Cod = 'niño'", "closed"},
            {"SELECT Lpc_IdArt FROM Lpc", "1;2;9;"},
            {"SELECT max(Art_FechaEstado), isnull((SELECT Art_FechaEstado FROM Art "
             "WHERE Art_Id = 10),Getdate()) FROM Art",
             "d38924.0|d46348.3;"},
        });
}

TEST(SqlStatements, ErrorsCarryTheServersNumbersAndTexts) {
    const auto connection = testDatabase();
    connection->runNative(
        "CREATE TRIGGER Refuse BEFORE DELETE ON Fam BEGIN SELECT RAISE(ABORT, 'La familia está en uso.'); "
        "END;"
        "CREATE UNIQUE INDEX One ON Marcas (Marca_CodAbrev COLLATE DEALER)");
    expectOutcomes(
        *connection,
        {
            {"SELECT * FROM Art WHERE Art_Cod = 'O'Ring'",
             "-2147217900: Comilla no cerrada antes de la cadena de caracteres ''."},
            {"SELECT * FROM Art WHERE Art_Cod = ''x'",
             "-2147217900: Comilla no cerrada antes de la cadena de caracteres ''."},
            {"SELECT * FROM Art WHERE Art_Cod = 'a' Ring",
             "-2147217900: Sintaxis incorrecta cerca de 'Ring'."},
            {"SELECT * FROM Art WHERE Art_Id =", "-2147217900: Sintaxis incorrecta cerca de '='."},
            {"SELECT * FROM Art WHERE Art_Id", "-2147217900: Sintaxis incorrecta cerca de 'Art_Id'."},
            {"SELECT 1; DELETE FROM Art", "-2147217900: Sintaxis incorrecta cerca de 'DELETE'."},
            {"SELECT 1 DELETE FROM Art", "-2147217900: Sintaxis incorrecta cerca de 'DELETE'."},
            {"DROP TABLE Art", "-2147217900: Sintaxis incorrecta cerca de 'DROP'."},
            {"", "-2147217900: Sintaxis incorrecta cerca de ''."},
            {"SELECT * FROM Nada", "-2147217865: El nombre de objeto 'Nada' no es válido."},
            {"SELECT (SELECT Nada FROM Exis) FROM Art",
             "-2147217900: El nombre de columna 'Nada' no es válido."},
            {"UPDATE Art SET \"Nada\" = 1", "-2147217900: El nombre de columna 'Nada' no es válido."},
            {"SELECT Art_Id FROM Art, Art AS b", "-2147217900: El nombre de columna 'Art_Id' es ambiguo."},
            {"SELECT sqlite_version()",
             "-2147217900: 'sqlite_version' no es un nombre de función integrada reconocido."},
            {"DELETE FROM Fam WHERE Fam_Id = 1", "-2147217873: La familia está en uso."},
            {"INSERT INTO Marcas (Marca_CodAbrev) VALUES ('same ')",
             "-2147217873: Infracción de la restricción UNIQUE: Marcas.Marca_CodAbrev"},
            {"INSERT INTO Lpc (Lpc_IdArt) VALUES (1,2)",
             "-2147217900: El número de valores de la cláusula "
             "VALUES no coincide con el número de columnas de la instrucción INSERT."},
        });
    for (const std::string_view nested : {"(", "- ", "(SELECT ", "NOT "}) {
        std::string deep = "DELETE FROM Art WHERE ";
        for (int level = 0; level < 20000; ++level) deep += nested;
        EXPECT_TRUE(outcome(*connection, deep).starts_with("-2147217900")) << nested;
    }
    EXPECT_EQ(outcome(*connection, "SELECT count(*) FROM Art"), "4;");
}

}  // namespace
}  // namespace pxtarvo::portable
