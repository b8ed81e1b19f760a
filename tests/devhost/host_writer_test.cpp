#include "devhost/library/host_context.h"

#include <gmock/gmock.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "devhost/record/recording_connection.h"
#include "host/row_write.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// The same connection to a writer that cannot see that it takes values.
ObjectRef<Connection> composing(const ObjectRef<Connection>& connection,
                                std::shared_ptr<devhost::Recorder> recorder = nullptr) {
    return makeObject<devhost::RecordingConnection>(connection, std::move(recorder), nullptr, false);
}

TEST(HostWriterLiterals, FollowTheKind) {
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
    const auto expect = [&](std::int32_t nTipo,
                            std::initializer_list<std::pair<Variant, const char*>> cases) {
        for (const auto& [value, text] : cases) EXPECT_EQ(literal(nTipo, value), text) << "kind " << nTipo;
    };
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    // A number of an error instead of a literal.
    expect(0, {{least, "1"}, {"quizá", "13"}});
    expect(1, {{least, "-2147483648"}, {2.5, "2"}, {"12", "12"}, {3e9, "6"}});
    expect(2, {{0.1, "0.1"}, {1e21, "1000000000000000000000"}, {-0.00000025, "-0.00000025"}});
    expect(2, {{"1.234,5", "1234.5"}, {"", "13"}});
    expect(3, {{"O'Ring 'x'", "'O''Ring ''x'''"}, {"", "''"}, {least, "'-2147483648'"}});
    expect(4, {{"05/08/2008", "'05/08/2008'"}, {Date{39665.75}, "'05/08/2008'"}});
    expect(5, {{"x", "5"}});
    expect(6, {{"Getdate()", "Getdate()"}, {least, "13"}});
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
    std::vector<std::pair<std::int32_t, Variant>> values;
    const auto add = [&](std::int32_t nTipo, std::initializer_list<Variant> some) {
        for (const Variant& value : some) values.emplace_back(nTipo, value);
    };
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min(), byte = 256;
    constexpr std::int16_t zero = 0, small = -32768;
    add(1, {zero, small, byte, least, Null{}});
    add(2, {12.5, 255.99, -0.0, 0.1, 1e15, 9007199254740994.0, 9223372036854774784.0, 9223372036854775808.0});
    add(2, {-9223372036854775808.0, 1e21, 4.9e-324, -2.5e-7, 1.7976931348623157e308});
    add(3, {"O'Ring 'x'", "'", "", " 12 ", "1e3", "+7", "12,5", "--ñ /*", std::string("a\0b", 3)});
    add(3, {"25/07/2012 10:30", Null{}});
    add(4, {"31/12/2012", "31/02/2012", "2012-12-31", Null{}});
    add(6, {"Getdate()", "1 + 1", "Texto", Null{}});
    // What the kind converts.
    add(0, {small, "tres"});
    add(1, {2.5, "tres"});
    add(2, {least, "2,5", "tres"});
    add(3, {least, -2.5, ErrorValue{2042}});
    add(4, {Date{39585}});
    for (const char* column :
         {"Texto", "Entero", "Corto", "Byte", "Bit", "Numero", "Importe", "Fecha", "Libre", "Nada"}) {
        for (const auto& [nTipo, value] : values) {
            std::string outcomes[2];
            for (const bool composed : {false, true}) {
                database.runNative(
                    "UPDATE Mezcla SET "
                    "Texto=NULL,Entero=NULL,Corto=NULL,Byte=NULL,Bit=NULL,Numero=NULL,Importe=NULL,"
                    "Fecha=NULL,Libre=NULL");
                std::string message;
                const devhost::WrittenColumn written{column, nTipo, value};
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
                << column << ", kind " << nTipo << ", " << joinedText(value, spanishLocale());
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

}  // namespace

}  // namespace pxtarvo::tests
