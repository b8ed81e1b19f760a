#include "import/location_update.h"

#include "host/row_write.h"
#include "import/article_file.h"
#include "module/mdo_pxtarvo.h"
#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

constexpr char separadorCampos = '\x01';
constexpr std::size_t nMaximoPasillo = 20;
constexpr std::int16_t nAlmacen = 1;

}  // namespace

/// Fields of a line, by position.
struct ActualizacionUbicaciones::Linea {
    enum Posicion { posCodigo = 17, posPasillo = 18, posExMin = 20 };

    std::vector<std::string_view> campos;

    /// 9 where the line has no such field.
    std::string_view campo(std::size_t posicion) const {
        if (posicion >= campos.size()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
        return campos[posicion];
    }
    std::string_view pasillo() const { return trimTrailingBlanks(campo(posPasillo)); }
    void agregarUbicacion(EscrituraFila& escritura) const {
        escritura.agregar(Ubi::Pasillo, firstCharacters(pasillo(), nMaximoPasillo))
            .agregar(Ubi::ExMin, replaced(campo(posExMin), ".", ","));
    }
};

ActualizacionUbicaciones::ActualizacionUbicaciones(Platform& platform, Label& Label2)
    : platform_(platform), Label2_(Label2) {}

void ActualizacionUbicaciones::ejecutar() {
    const std::string sFichero(sFicheroArticulos);
    if (sFichero.empty()) {
        Message aviso;
        aviso.icon = MessageIcon::Critical;
        platform_.desktop().messageBox(aviso);
        return;
    }
    Label2_.setCaption("FICHERO EN PROCESO " + sFichero);
    Label2_.setVisible(true);
    platform_.desktop().doEvents();

    TextFiles& ficheros = platform_.textFiles();
    ficheros.openForInput(nFicheroArticulos, sFichero);
    while (!ficheros.atEnd(nFicheroArticulos)) {
        const std::string sLinea = ficheros.lineInput(nFicheroArticulos);
        ubicarArticulo({split(sLinea, separadorCampos)});
    }
    ficheros.close(nFicheroArticulos);
    avisar(textoUbicacionesLeidas());
}

void ActualizacionUbicaciones::ubicarArticulo(const Linea& linea) {
    if (linea.pasillo().empty()) return;
    const ObjectRef<Recordset> rsArticulo =
        consultar(joined({"SELECT Art_Id FROM Art WHERE Art_Cod = '", linea.campo(Linea::posCodigo), "'"}));
    if (rsArticulo->RecordCount() < 1) return;
    const Locale& locale = platform_.locale();
    const std::int32_t IdArt = toLong(rsArticulo->Fields(0), locale);

    const ObjectRef<Recordset> rsUbicacion =
        consultar(joined({"SELECT * FROM Ubi WHERE Ubi_IdArt = ", plainNumber(IdArt)}));
    if (rsUbicacion->RecordCount() != 1) {
        EscrituraFila escritura(MyBd(), Ubi::tabla);
        escritura.agregar(Ubi::IdArt, IdArt).agregar(Ubi::IdAlm, nAlmacen);
        linea.agregarUbicacion(escritura);
        std::string sMensaje;
        escritura.insertar(sMensaje);
    } else if (trimBlanks(joinedText(rsUbicacion->Fields("Ubi_pasillo"), locale)).empty()) {
        EscrituraFila escritura(MyBd(), Ubi::tabla);
        linea.agregarUbicacion(escritura);
        escritura.actualizar(condicion(Ubi::Id, rsUbicacion->Fields("Ubi_Id"), locale));
    }
}

}  // namespace pxtarvo
