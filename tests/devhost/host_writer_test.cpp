#include "devhost/host_writer.h"

#include <gmock/gmock.h>

#include "devhost/host_folder.h"
#include "host/row_write.h"

namespace pxtarvo::tests {

namespace {

using devhost::HostWrite;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

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
    for (const Case& one : cases) {
        std::string sql;
        const std::int32_t error =
            errorOf([&] { devhost::appendLiteral(sql, one.nTipo, one.value, spanishLocale()); });
        EXPECT_EQ(error != 0 ? std::to_string(error) : sql, one.literal) << "kind " << one.nTipo;
    }
    for (const std::int32_t nTipo : {0, 1, 2, 3, 4, 6}) {
        std::string sql;
        devhost::appendLiteral(sql, nTipo, Null{}, spanishLocale());
        EXPECT_EQ(sql, "NULL") << nTipo;
    }
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
