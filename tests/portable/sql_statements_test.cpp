// The statements of the plug-in, exactly as it sends them, and the dialect around them.

#include <gtest/gtest.h>

#include "tests/portable/sql_test_database.h"

namespace pxtarvo::portable {
namespace {

void expectOutcomes(SqliteConnection& connection, std::initializer_list<StatementCase> cases) {
    for (const StatementCase& one : cases) EXPECT_EQ(outcome(connection, one.sql), one.outcome) << one.sql;
}

constexpr std::string_view zeroPrefixQuery =
    "select Art_Id,Art_Cod,Exis_Id,Exis_alma,Exis_Cantidad  from art INNER JOIN EXIS ON EXIS_IDART = ART_ID "
    "WHERE substring(art_cod,1,1)<>'0' AND art_cod = replace(art_cod,'.','A') "
    "AND art_id in(SELECT ArP_Ida FROM ArtPro WHERE ArP_Idp = 4) ";

std::string deletionSearch(std::string_view criteria) {
    return "SELECT Art_Id,Art_Cod,Art_Des, (SELECT Marca_DES FROM Marcas WHERE Marca_Id = Art_Marca) "
           "AS Marca, (SELECT FAM_DES FROM Fam WHERE Fam_Id = Art_FAm) AS Familia, ISNULL((SELECT 'Si' "
           "FROM Exis WHERE Exis_IdArt = Art_Id OR Exis_Codart = Art_Cod),'No') "
           "AS Almacen,CASE WHEN Art_Estado = 0 then 'Activo' else 'Baja' END As Estado,Art_FechaEstado "
           "FROM Art WHERE Art_Id NOT IN (SELECT Lapr_IdArt FROM Lapr GROUP BY Lapr_IdArt)  "
           "AND art_id NOT IN (SELECT PedLi_IdArt FROM Pedli GROUP BY PedLi_IdArt)  "
           "AND art_id not in (select lav_idart from lav group by lav_idart)  AND Art_Id NOT IN "
           "(SELECT Lpc_IdArt FROM Lpc GROUP BY Lpc_IdArt)  AND art_cod not in (select lac_codart "
           "from lac group by lac_codart)  AND Art_Id NOT IN (SELECT Hexis_idArt FROM Hexis "
           "GROUP BY Hexis_idArt) " +
           std::string(criteria) + " ORDER BY Art_FechaEstado";
}

TEST(SqlStatements, RunAsThePlugInSendsThem) {
    const auto connection = testDatabase();
    expectOutcomes(
        *connection,
        {
            {"SELECT Art_Id,Art_Cod,Art_Des FROM Art WHERE Art_Marca = 12AND Art_Estado = 0  "
             "ORDER BY Art_Des",
             "8|1234|Bulón;7|0100123|tuerca;"},
            {"SELECT Exis_Cantidad FROM Exis WHERE Exis_IdArt = 8", "5.00;"},
            {"SELECT MAX(Art_Id) FROM Art", "10;"},
            {"SELECT * FROM ArtPro WHERE ARP_Ida = 7 AND ARP_Idp = 24", "4|7|24|-;"},
            {"SELECT Art_Id FROM Art WHERE Art_Cod= '01234'", ""},
            {"SELECT Art_Id FROM Art WHERE Art_barCode = ''", ""},
            {zeroPrefixQuery, "8|1234|1|2|5.00;9|Niño|2|1|-2.5;"},
            {"Select Pro_ID,Pro_COD,(isnull((CASE WHEN Pro_TIPDOC =0 THEN Pro_NOM ELSE Pro_Nom + ' ' + "
             "Pro_APE1 + ' ' + Pro_APE2 END),Pro_comer)) as Pro_Nom FROM Pro",
             "1|24|Agro;2|25|Ana Paz Gil;3|26|C-26;"},
            {"Select Pro_ID,Pro_COD,(isnull((CASE WHEN Pro_TIPDOC =0 THEN Pro_NOM ELSE Pro_Nom + ' ' + "
             "Pro_APE1 + ' ' + Pro_APE2 END),Pro_comer)) as Pro_Nom FROM Pro where Pro_COD=25",
             "2|25|Ana Paz Gil;"},
            {"Select PRO_ID,PRO_COD,(PRO_NOM + ' ' + ISNULL(PRO_APE1,'') + ' ' + ISNULL(PRO_APE2,'')) "
             "AS RSOC FROM PRO",
             "1|24|Agro Paz Gil;2|25|Ana Paz Gil;3|26|Eva  Gil;"},
            {"Select Pro_ID,Pro_COD,Pro_COMER FROM Pro ORDER BY Pro_COMER", "1|24|A-24;2|25|B-25;3|26|C-26;"},
            {"SELECT PRO_ID,PRO_COD,PRO_NOM,PRO_comer FROM PRO WHERE  PRO_id = 3", "3|26|Eva|C-26;"},
            {"Select Marca_ID,Marca_Des,Marca_CodAbrev FROM Marcas where Marca_CodAbrev = 'same'",
             "12|Same|SAME;"},
            {"UPDATE Art Set Art_Estado=1, Art_FechaEstado = '22/11/2026' WHERE Art_Estado =0 "
             "AND Art_Marca = 12",
             "closed"},
            {"SELECT Art_Id,Art_Estado+0,Art_FechaEstado FROM Art WHERE Art_Estado = 1",
             "7|1|d46348.0;8|1|d46348.0;9|1|d38354.0;"},
            {"INSERT INTO Art (ART_PVE,Art_FechaEstado,ART_Cod,Art_Marca) "
             "VALUES (12.5,Getdate(),'O''Ring',-3)",
             "closed"},
            {"SELECT MAX(Art_Id),Art_Pve,Art_FechaEstado,Art_Marca FROM Art WHERE Art_Cod = 'o''ring'  ",
             "11|12.5|d46348.3|-3;"},
            {"DELETE FROM Art WHERE Art_Id = 11", "closed"},
            {"INSERT INTO Art (ART_Cod) VALUES (NULL)", "closed"},
            {"SELECT MAX(Art_Id) FROM Art", "12;"},
            {"DELETE FROM Exis WHERE Exis_IdArt = 1 OR Exis_Codart = 'niño'", "closed"},
            {"SELECT count(*) FROM Exis", "1;"},
        });
}

TEST(SqlStatements, SearchOfArticlesWithoutMovements) {
    const auto connection = testDatabase();
    expectOutcomes(
        *connection,
        {
            {deletionSearch(""),
             "10|A.B|arandela|Cinco|-|No|Activo|-;"
             "9|Niño|Ñandú|Same|Tornillos|Si|Baja|d38354.0;"
             "7|0100123|tuerca|Same|Tornillos|No|Activo|d38923.9;"
             "8|1234|Bulón|Same|-|Si|Activo|d38924.0;"},
            {deletionSearch(
                 " AND  Art_FechaEstado<='25/07/2006 23:59:59' AND Art_Estado=0 AND Art_Marca = 12"),
             "7|0100123|tuerca|Same|Tornillos|No|Activo|d38923.9;"},
            {"INSERT INTO lac (lac_codart) VALUES ('NIÑO ')", "closed"},
            {deletionSearch(" AND Art_Estado=1"), ""},
            {"INSERT INTO Exis (Exis_IdArt,Exis_Codart) VALUES (3,'1234')", "closed"},
            {deletionSearch(" AND Art_Marca = 5"), "10|A.B|arandela|Cinco|-|No|Activo|-;"},
            {deletionSearch(""),
             "-2147217900: La subconsulta ha devuelto más de un valor, lo que no es correcto cuando va a "
             "continuación de =, !=, <, <=, >, >= o cuando se utiliza como expresión."},
            {"INSERT INTO lav (lav_idart) VALUES (NULL)", "closed"},
            {deletionSearch(""), ""},
        });
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
        for (int level = 0; level < 100000; ++level) deep += nested;
        EXPECT_TRUE(outcome(*connection, deep).starts_with("-2147217900")) << nested;
    }
    EXPECT_EQ(outcome(*connection, "SELECT count(*) FROM Art"), "4;");
}

}  // namespace
}  // namespace pxtarvo::portable
