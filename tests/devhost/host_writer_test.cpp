#include "devhost/library/host_context.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "devhost/record/recording_connection.h"
#include "host/row_write.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

using devhost::HostWrite;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// The same connection to a writer that cannot see that it takes values.
ObjectRef<Connection> composing(const ObjectRef<Connection>& connection,
                                std::shared_ptr<devhost::Recorder> recorder = nullptr) {
    return makeObject<devhost::RecordingConnection>(connection, std::move(recorder), nullptr, false);
}

TEST(HostWriterLiterals, FollowTheKind) {
    struct Case {
        std::int32_t nTipo;
        Variant value;
        const char* literal;  ///< or the number of the error
    };
    const Case cases[] = {
        {0, std::int16_t{0}, "0"},
        {0, std::int32_t{-7}, "1"},
        {0, "quizá", "13"},
        {1, std::int16_t{11}, "11"},
        {1, std::int32_t{-2147483647 - 1}, "-2147483648"},
        {1, 37.0, "37"},
        {1, 2.5, "2"},
        {1, "12", "12"},
        {1, 3e9, "6"},
        {1, "x", "13"},
        {2, 12.5, "12.5"},
        {2, 0.1, "0.1"},
        {2, 1e21, "1000000000000000000000"},
        {2, -0.00000025, "-0.00000025"},
        {2, "2,5", "2.5"},
        {2, "1.234,5", "1234.5"},
        {2, "", "13"},
        {2, std::int16_t{0}, "0"},
        {3, "O'Ring 'x'", "'O''Ring ''x'''"},
        {3, "'", "''''"},
        {3, "", "''"},
        {3, std::int32_t{7}, "'7'"},
        {4, "05/08/2008", "'05/08/2008'"},
        {4, Date{39665.75}, "'05/08/2008'"},
        {6, "Getdate()", "Getdate()"},
        {6, std::int32_t{1}, "13"},
        {5, "x", "5"},
    };
    const HostFolder host;
    std::string sql;
    const auto recorder = std::make_shared<devhost::Recorder>(
        [&](std::string_view line) { sql = nlohmann::json::parse(line)["sql"]; });
    devhost::HostWriter writer(composing(host.connection, recorder), spanishLocale());
    const auto literal = [&](std::int32_t nTipo, const Variant& value) {
        const devhost::WrittenColumn column{"x", nTipo, value};
        sql.clear();
        const std::int32_t error = errorOf([&] {
            writer.run({devhost::WriteKind::Update, "Nada", "", {&column, 1}});
        });
        return sql.empty() ? std::to_string(error) : sql.substr(std::string("UPDATE Nada SET x=").size());
    };
    for (const Case& one : cases)
        EXPECT_EQ(literal(one.nTipo, one.value), one.literal) << "kind " << one.nTipo;
    for (const std::int32_t nTipo : {0, 1, 2, 3, 4, 6}) EXPECT_EQ(literal(nTipo, Null{}), "NULL") << nTipo;
}

/// An ordinary write binds its values, an unusual one is composed: every write is done both ways.
TEST(HostWriter, ValuesArriveAlikeBoundAndComposed) {
    HostFolder host;
    devhost::HostWriter writers[] = {{host.connection, spanishLocale()},
                                     {composing(host.connection), spanishLocale()}};
    portable::SqliteConnection& database =
        dynamic_cast<portable::SqliteConnection&>(*host.connection.shared());
    database.runNative(
        "CREATE TABLE Mezcla (Id INTEGER PRIMARY KEY, Texto VARCHAR(60), Entero INTEGER, Corto SMALLINT, "
        "Byte TINYINT, Bit BIT, Numero FLOAT, Importe DECIMAL(10,2), Fecha DATETIME, Libre);"
        "INSERT INTO Mezcla (Id) VALUES (-3), (7)");
    database.BeginTrans();  // one transaction of the many is a good deal faster
    const auto stored = [&](const char* column) {
        const auto statement = portable::prepare(
            database.handle(), std::string("SELECT typeof(x)||':'||hex(x)||':'||quote(x) FROM (SELECT ") +
                                   column + " AS x FROM Mezcla ORDER BY Id)");
        std::string all;
        while (portable::step(statement.get())) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
            all += std::string(text ? text : "null") + ' ';
        }
        return all;
    };
    struct Value {
        std::int32_t nTipo;
        Variant value;
    };
    const Value values[] = {
        {1, std::int16_t{-32768}},
        {1, std::int32_t{255}},
        {1, std::int32_t{256}},
        {1, std::int16_t{0}},
        {1, std::int32_t{-2147483647 - 1}},
        {2, 12.5},
        {2, -12.5},
        {2, 255.99},
        {2, -0.0},
        {2, 0.1},
        {2, 1e15},
        {2, 9007199254740994.0},
        {2, 9223372036854774784.0},
        {2, 9223372036854775808.0},
        {2, -9223372036854775808.0},
        {2, 1e21},
        {2, 4.9e-324},
        {2, -2.5e-7},
        {2, 1.7976931348623157e308},
        {3, "O'Ring 'x'"},
        {3, "'"},
        {3, ""},
        {3, " 12 "},
        {3, "1e3"},
        {3, "+7"},
        {3, "12,5"},
        {3, "--ñ /*"},
        {3, std::string("a\0b", 3)},
        {3, "25/07/2012 10:30"},
        {4, "31/12/2012"},
        {4, "31/02/2012"},
        {4, "2012-12-31"},
        {6, "Getdate()"},
        // What the kind converts.
        {0, std::int16_t{0}},
        {0, std::int16_t{-1}},
        {0, "tres"},
        {1, 2.5},
        {1, "tres"},
        {2, std::int16_t{0}},
        {2, std::int32_t{-5}},
        {2, "2,5"},
        {2, "tres"},
        {3, std::int32_t{7}},
        {3, -2.5},
        {3, ErrorValue{2042}},
        {4, Date{39585}},
        {1, Null{}},
        {3, Null{}},
        {4, Null{}},
        {6, Null{}},
        {6, "1 + 1"},
        {6, "Texto"},
    };
    for (const char* column :
         {"Texto", "Entero", "Corto", "Byte", "Bit", "Numero", "Importe", "Fecha", "Libre", "Nada"}) {
        for (const Value& one : values) {
            std::string outcomes[2];
            for (const bool composed : {false, true}) {
                database.runNative(
                    "UPDATE Mezcla SET "
                    "Texto=NULL,Entero=NULL,Corto=NULL,Byte=NULL,Bit=NULL,Numero=NULL,Importe=NULL,"
                    "Fecha=NULL,Libre=NULL");
                std::string message;
                const devhost::WrittenColumn written{column, one.nTipo, one.value};
                for (const char* where :
                     {" WHERE Id = -3",
                      " WHERE Id = 7 OR Texto = 'O''Ring' AND 1e3 < 99999999999999999999"}) {
                    try {
                        writers[composed].run({devhost::WriteKind::Update, "Mezcla", where, {&written, 1}});
                    } catch (const RuntimeError& error) {
                        message += error.description();
                    }
                }
                outcomes[composed] = (column == std::string_view("Nada") ? "" : stored(column)) + message;
            }
            EXPECT_EQ(outcomes[0], outcomes[1])
                << column << ", kind " << one.nTipo << ", " << joinedText(one.value, spanishLocale());
        }
    }
}

/// The form of a write outlives what it was prepared for: a changed table, and other statements in between.
TEST(HostWriter, RepeatedWritesFollowTheTables) {
    HostFolder host;
    const ObjectRef<HostDatabase> context = host.context();
    portable::SqliteConnection& database =
        dynamic_cast<portable::SqliteConnection&>(*host.connection.shared());
    std::string message;
    const auto insert = [&](std::int32_t id, const Variant& text) {
        return EscrituraFila(context, Aat::tabla)
            .agregar(Aat::Id, id)
            .agregar(Aat::C01, text)
            .insertar(message);
    };
    database.BeginTrans();
    EXPECT_TRUE(insert(1, "12"));
    database.runNative("DROP TABLE Aat; CREATE TABLE Aat (Aat_Id INTEGER PRIMARY KEY, Aat_C01 DATETIME)");
    EXPECT_TRUE(insert(1, "25/07/2012"));
    EXPECT_FALSE(insert(2, "12"));
    EXPECT_THAT(host.rows("SELECT * FROM Aat"), ElementsAre("1|25/07/2012"));
    database.runNative("DROP TABLE Aat");
    EXPECT_FALSE(insert(2, "25/07/2012"));
    EXPECT_THAT(message, HasSubstr("Aat"));
    database.runNative("CREATE TABLE Aat (Aat_Id INTEGER PRIMARY KEY, Aat_C01 VARCHAR(60))");
    for (std::size_t other = 0; other < 2 * portable::StatementCache::capacity; ++other) {
        EXPECT_TRUE(insert(static_cast<std::int32_t>(other), "x"));
        host.rows("SELECT Aat_Id AS a" + std::to_string(other) + " FROM Aat WHERE Aat_Id = 0");
    }
    context->Tabla("Aat");
    context->Campos()->Agregar("Aat_Nada", 3, Null{}, 2);  // no part of a deletion
    context->Condicion(" WHERE Aat_Id = 5");
    EXPECT_TRUE(context->Borrar(message));
    EXPECT_THAT(host.rows("SELECT count(*) FROM Aat"), ElementsAre("511"));
}

TEST(HostWriter, WritesInsideTheCallersTransaction) {
    HostFolder host;
    const ObjectRef<HostDatabase> context = host.context();
    std::string message;
    EXPECT_TRUE(EscrituraFila(context, Ubi::tabla)
                    .agregar(Ubi::IdArt, std::int32_t{7})
                    .agregar(Ubi::Pasillo, "P'04")
                    .agregar(Ubi::ExMin, "2,5")
                    .insertar(message));
    host.connection->BeginTrans();
    EscrituraFila(context, Ubi::tabla).agregar(Ubi::Pasillo, Null{}).actualizar(condicion(Ubi::Id, 1));
    EXPECT_TRUE(EscrituraFila(context, Exis::tabla, AbrirCon::Limpiar)
                    .agregarFechaServidor(Exis::Fentrada)
                    .agregar(Exis::Kill, std::int16_t{0})
                    .agregar(Exis::CodArt, Null{})
                    .insertar(message));
    EXPECT_THAT(host.rows("SELECT Ubi_IdArt,Ubi_Pasillo,Ubi_ExMin FROM Ubi"), ElementsAre("7|NULL|2,5"));
    EXPECT_THAT(host.rows("SELECT Exis_Fentrada,Exis_Kill,Exis_CodArt,Exis_Lote FROM Exis"),
                ElementsAre("25/07/2012 10:30:00|Falso|NULL|NULL"));
    EXPECT_TRUE(EscrituraFila(context, Ubi::tabla).borrar(" WHERE Ubi_Id = 1 OR Ubi_Pasillo = 'x'", message));
    EXPECT_THAT(host.rows("SELECT * FROM Ubi"), IsEmpty());
    host.connection->RollbackTrans();
    EXPECT_THAT(host.rows("SELECT Ubi_Pasillo FROM Ubi"), ElementsAre("P'04"));
    EXPECT_THAT(host.rows("SELECT * FROM Exis"), IsEmpty());
}

TEST(HostWriter, RefusalsComeBackWithAMessageAndLeaveTheTransactionOpen) {
    HostFolder host;
    const ObjectRef<HostDatabase> context = host.context();
    host.connection->BeginTrans();
    std::string message;
    EscrituraFila(context, Aat::tabla).agregar(Aat::Id, std::int32_t{3}).insertar(message);
    EXPECT_FALSE(EscrituraFila(context, Aat::tabla).agregar(Aat::Id, std::int32_t{3}).insertar(message));
    EXPECT_FALSE(message.empty());
    EXPECT_FALSE(EscrituraFila(context, Aat::tabla).agregar(Aat::Id, "tres").insertar(message));
    EXPECT_EQ(message, "No coinciden los tipos");
    constexpr Tabla unknown{"Nada", Aat::columnas};
    EXPECT_FALSE(EscrituraFila(context, unknown).agregar(Aat::C01, "x").insertar(message));
    EXPECT_THAT(message, HasSubstr("Nada"));
    EXPECT_FALSE(EscrituraFila(context, Aat::tabla).borrar(" WHERE Aat_Id = 'x", message));
    EXPECT_FALSE(EscrituraFila(context, Aat::tabla).borrar("", message));
    EscrituraFila(context, Aat::tabla).agregar(Aat::C01, "todas").actualizar("");
    EscrituraFila(context, Aat::tabla).agregar(Aat::Id, "tres").actualizar(condicion(Aat::Id, 3));
    host.connection->CommitTrans();
    EXPECT_THAT(host.rows("SELECT * FROM Aat"), ElementsAre("3|NULL"));
}

/// What is wrong with the file itself is no refusal.
TEST(HostWriter, FailuresOfTheDatabaseAreRaised) {
    HostFolder host;
    const ObjectRef<HostDatabase> context = host.context();
    std::string message;
    const auto insert = [&] {
        EscrituraFila(context, Aat::tabla).agregar(Aat::Id, std::int32_t{3}).insertar(message);
    };
    sqlite3* const database = dynamic_cast<portable::SqliteConnection&>(*host.connection.shared()).handle();
    portable::run(database, "PRAGMA query_only = 1");
    EXPECT_EQ(errorOf(insert), -2147467259);
    portable::run(database, "PRAGMA query_only = 0");
    insert();
    EXPECT_EQ(host.state->refused.count(), 0u);
    insert();
    insert();
    EXPECT_EQ(host.state->refused.count(), 2u);
    EXPECT_EQ(host.state->refused.first(),
              "insert Aat, Aat_Id = 3: Infracción de la restricción PRIMARY KEY: Aat.Aat_Id");
}

TEST(HostWriter, KeepsTableAndConditionButNotColumns) {
    HostFolder host;
    const ObjectRef<HostDatabase> context = host.context();
    std::string message;
    context->Tabla("Aat");
    context->Condicion(" WHERE Aat_Id = 1");
    context->Campos()->Agregar("Aat_Nada", 3, "x", 2);
    context->Limpiar(0);
    context->Campos()->Agregar("Aat_Id", 1, std::int32_t{1}, 2);
    EXPECT_TRUE(context->Insertar(message));
    context->Campos()->Agregar("Aat_C01", 3, "uno", 2);
    context->Ejecutar(message);
    EXPECT_THAT(host.rows("SELECT * FROM Aat"), ElementsAre("1|uno"));
    EXPECT_TRUE(context->Borrar(message));
    EXPECT_THAT(host.rows("SELECT * FROM Aat"), IsEmpty());
}

TEST(HostWriter, HookRefusesOrFailsAndIsRecorded) {
    HostFolder host;
    std::vector<std::string> record;
    host.state->recorder =
        std::make_shared<devhost::Recorder>([&](std::string_view line) { record.emplace_back(line); });
    host.state->beforeWrite = [](const HostWrite& write) -> std::optional<std::string> {
        if (write.condition.ends_with("9")) throw RuntimeError(-5, "roto");
        return "no";
    };
    const ObjectRef<HostDatabase> context = host.context();
    std::string message;
    EXPECT_FALSE(EscrituraFila(context, Aat::tabla).borrar(condicion(Aat::Id, 8), message));
    EXPECT_EQ(message, "no");
    EXPECT_EQ(errorOf([&] { EscrituraFila(context, Aat::tabla).borrar(condicion(Aat::Id, 9), message); }),
              -5);
    EXPECT_EQ(errorOf([&] {
                  EscrituraFila(context, Aat::tabla).agregar(Aat::C01, "").actualizar(condicion(Aat::Id, 9));
              }),
              -5);
    EXPECT_THAT(
        record,
        ElementsAre(
            R"({"call":"delete","table":"Aat","where":" WHERE Aat_Id = 8","ok":false})",
            R"({"call":"delete","table":"Aat","where":" WHERE Aat_Id = 9",)"
            R"("error":{"number":-5,"description":"roto"}})",
            R"({"call":"update","table":"Aat","where":" WHERE Aat_Id = 9","columns":[["Aat_C01",3,""]],)"
            R"("error":{"number":-5,"description":"roto"}})"));
}

}  // namespace

}  // namespace pxtarvo::tests
