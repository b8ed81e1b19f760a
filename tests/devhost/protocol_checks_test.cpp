#include "devhost/record/protocol_checks.h"

#include <gmock/gmock.h>

#include "host/row_write.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

using ::testing::ElementsAre;

/// A host that replaces its context after each use, and ways to break its rules; the scenarios keep them.
class Rules : public ::testing::Test {
  protected:
    Rules() {
        host_.state->rotate = [this] { bd = host_.context(); };
        bd = host_.context();
    }

    /// A copy, as the instance gives one.
    ObjectRef<HostDatabase> MyBd() const { return bd; }
    const std::vector<std::string>& violations() const { return host_.state->checks->violations(); }

    void writeArticle(const ObjectRef<HostDatabase>& context) {
        EscrituraFila(context, Art::tabla).agregar(Art::PVE, 1.0).actualizar(condicion(Art::Id, 1));
    }
    void writeDiscount(const ObjectRef<HostDatabase>& context) {
        EscrituraFila(context, Aat::tabla).agregar(Aat::C01, "").actualizar(condicion(Aat::Id, 1));
    }
    void writeHistory(const ObjectRef<HostDatabase>& context, AbrirCon primero = AbrirCon::Limpiar) {
        EscrituraFila(context, Hexis::tabla, primero).agregar(Hexis::Tipo, "E").insertar(message_);
    }

    HostFolder host_;
    ObjectRef<HostDatabase> bd;
    std::string message_;
};

TEST_F(Rules, NoticeWhatIsKept) {
    const ObjectRef<HostDatabase> kept = MyBd();
    const ObjectRef<Connection> connection = kept->Conexion();
    connection->Execute("SELECT * FROM Art", adOptionUnspecified);
    connection->BeginTrans();
    kept->Conexion();
    writeArticle(kept);
    writeDiscount(MyBd());
    const ObjectRef<HostDatabase> history = MyBd();
    writeHistory(history);
    writeHistory(history);
    EXPECT_THAT(violations(), ElementsAre("BeginTrans called on a connection that was kept",
                                          "Conexion asked of a context that was kept",
                                          "update Art: from a context that was kept",
                                          "update Aat: not from the context of the row's article",
                                          "insert Hexis: from a context that was kept"));
}

TEST_F(Rules, NoticeHowAWriteIsMade) {
    writeHistory(MyBd(), AbrirCon::Tabla);
    EscrituraFila(MyBd(), Ubi::tabla, AbrirCon::Limpiar)
        .agregar(Ubi::ExMin, "1")
        .actualizar(condicion(Ubi::Id, 1));
    const ObjectRef<HostDatabase> bare = MyBd();
    bare->Tabla("Hexis");
    bare->Condicion(" WHERE 1 = 1");
    const ObjectRef<HostFieldList> campos = bare->Campos();
    campos->Agregar("Hexis_Tipo", 3, "E", 1);
    campos->Agregar("Hexis_Com", 3, "", 2);
    bare->Insertar(message_);
    MyBd()->Conexion()->Execute("SELECT * FROM Art", 1);
    EXPECT_THAT(
        violations(),
        ElementsAre("insert Hexis: Tabla set before Limpiar", "update Ubi: Limpiar called before Tabla",
                    "Hexis_Tipo added with mode 1", "Hexis_Com added without reading Campos afresh",
                    "insert Hexis: Limpiar not called", "insert Hexis: the condition is not empty",
                    "Execute called with options 1"));
}

TEST_F(Rules, NoticeTheTypeOfAValue) {
    EscrituraFila(MyBd(), Art::tabla)
        .agregar(Art::Estado, std::int32_t{0})
        .agregar(Art::PVE, std::int16_t{0})
        .agregar(Art::Marca, std::int32_t{1})
        .agregar(Art::Cod, Null{})
        .agregar(Art::PCO, "0")
        .insertar(message_);
    EscrituraFila(MyBd(), Art::tabla)
        .agregar(Art::PVE, std::int16_t{0})
        .agregar(Art::Cod, "A")
        .actualizar(condicion(Art::Id, 1));
    EXPECT_THAT(violations(),
                ElementsAre("insert Art: Art_Estado given as Long", "insert Art: ART_PCO given as Text",
                            "update Art: ART_PVE given as Integer",
                            "update Art: ART_Cod is never written, not even as Text"));
}

}  // namespace

}  // namespace pxtarvo::tests
