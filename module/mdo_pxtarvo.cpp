#include "module/mdo_pxtarvo.h"

#include "host/counted_rows.h"
#include "platform/error_trap.h"
#include "platform/thread_slots.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

using namespace std::literals;

constexpr auto sFiltroLibros = "Fichero Excel (*.XLS)\0*.XLS\0"sv;
constexpr std::uint32_t nMaximoRuta = 255;

constexpr std::string_view sFiltroFichero = "*.xls";
constexpr std::string_view sTituloFichero = "Selección del fichero de tarifas para importar";

using Casillas = ThreadSlots<std::shared_ptr<Instancia>>;

}  // namespace

void guardarInstancia(std::shared_ptr<Instancia> instancia) {
    Casillas::get().swap(instancia);
}

const Instancia& goInstancia() {
    const auto* const instancia = Casillas::find();
    if (!instancia) throw RuntimeError(ErrorNumber::ObjectNotSet);
    return **instancia;
}

ObjectRef<HostDatabase> MyBd() {
    return goInstancia().MyBd();
}

ObjectRef<Recordset> consultar(std::string_view sSQL) {
    return contado(MyBd()->Conexion()->Execute(sSQL, adOptionUnspecified));
}

void deshacer(bool bComenzada) {
    try {
        insisted([] { MyBd()->Conexion()->RollbackTrans(); });
    } catch (const RuntimeError&) {
        if (bComenzada) throw;
    }
}

std::string SeleccionarFichero(std::string_view sDirectorio, std::string_view sFiltro,
                               std::string_view sTitulo) {
    OpenFileName registro;
    registro.lpstrFilter = sFiltro.empty() ? sFiltroLibros : sFiltro;
    registro.lpstrFile.assign(nMaximoRuta - 1, ' ');
    registro.nMaxFile = nMaximoRuta;
    registro.lpstrFileTitle.assign(nMaximoRuta - 1, ' ');
    registro.nMaxFileTitle = nMaximoRuta;
    registro.lpstrInitialDir = sDirectorio;
    registro.lpstrTitle = sTitulo;
    if (!goInstancia().platform().desktop().getOpenFileName(registro)) return {};
    return std::string(trimBlanks(registro.lpstrFile));
}

std::string ExaminarFichero() {
    const std::string sRuta =
        SeleccionarFichero(goInstancia().platform().moduleFolder(), sFiltroFichero, sTituloFichero);
    return std::string(trimBlanks(sRuta));
}

void avisar(std::string_view sTexto) {
    const Message mensaje = insisted([&] { return Message{.text = std::string(sTexto)}; });
    goInstancia().platform().desktop().messageBox(mensaje);
}

}  // namespace pxtarvo
