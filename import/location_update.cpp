// The location update from the article file: lines in the ANSI code page, ended by CR or CR LF, of fields
// separated by the character of code 1.

#include "import/article_file.h"
#include "import/run_state.h"
#include "platform/platform.h"
#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

constexpr char separadorCampos = '\x01';
constexpr std::size_t nMaximoPasillo = 20;

/// Fields of a line, by position.
enum Posicion { posCodigo = 17, posPasillo = 18, posExMin = 20 };

/// 9 where the line has no such field.
std::string_view campo(const std::vector<std::string_view>& campos, Posicion posicion) {
    const auto nPosicion = static_cast<std::size_t>(posicion);
    if (nPosicion >= campos.size()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
    return campos[nPosicion];
}

std::string_view pasillo(const std::vector<std::string_view>& campos) {
    return trimTrailingBlanks(campo(campos, posPasillo));
}

void agregarUbicacion(EscrituraFila& escritura, const std::vector<std::string_view>& campos) {
    escritura.agregar(Ubi::Pasillo, firstCharacters(pasillo(campos), nMaximoPasillo))
        .agregar(Ubi::ExMin, replaced(campo(campos, posExMin), ".", ","));
}

}  // namespace

void frmImpTarifas::XPButton4_Click() {
    const std::string sFichero(sFicheroArticulos);
    if (sFichero.empty()) {
        Message aviso;
        aviso.icon = MessageIcon::Critical;
        platform().desktop().messageBox(aviso);
        return;
    }
    Label2.setCaption("FICHERO EN PROCESO " + sFichero);
    Label2.setVisible(true);
    platform().desktop().doEvents();

    TextFiles& ficheros = platform().textFiles();
    ficheros.openForInput(nFicheroArticulos, sFichero);
    while (!ficheros.atEnd(nFicheroArticulos)) {
        const std::string sLinea = ficheros.lineInput(nFicheroArticulos);
        ubicarArticulo(split(sLinea, separadorCampos));
    }
    ficheros.close(nFicheroArticulos);
    avisar(textoUbicacionesLeidas());
}

void frmImpTarifas::ubicarArticulo(const std::vector<std::string_view>& campos) {
    if (pasillo(campos).empty()) return;
    const ObjectRef<Recordset> rsArticulo =
        consultar(joined({"SELECT Art_Id FROM Art WHERE Art_Cod = '", campo(campos, posCodigo), "'"}));
    if (rsArticulo->RecordCount() < 1) return;
    const Locale& locale = platform().locale();
    const std::int32_t IdArt = toLong(rsArticulo->Fields(0), locale);

    const ObjectRef<Recordset> rsUbicacion =
        consultar(joined({"SELECT * FROM Ubi WHERE Ubi_IdArt = ", plainNumber(IdArt)}));
    if (rsUbicacion->RecordCount() != 1) {
        EscrituraFila escritura(MyBd(), Ubi::tabla);
        escritura.agregar(Ubi::IdArt, IdArt).agregar(Ubi::IdAlm, nUno);
        agregarUbicacion(escritura, campos);
        std::string sMensaje;
        escritura.insertar(sMensaje);
    } else if (trimBlanks(texto(rsUbicacion->Fields("Ubi_pasillo"))).empty()) {
        EscrituraFila escritura(MyBd(), Ubi::tabla);
        agregarUbicacion(escritura, campos);
        escritura.actualizar(condicion(Ubi::Id, toLong(rsUbicacion->Fields("Ubi_Id"), locale)));
    }
}

}  // namespace pxtarvo
