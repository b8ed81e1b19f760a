// The steps that the imports share.

#include "import/run_state.h"
#include "import/run_texts.h"
#include "platform/error_trap.h"
#include "platform/platform.h"
#include "platform/values/conversion.h"
#include "platform/values/date_text.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

bool frmImpTarifas::abrirOrigen() {
    if (msConectarOrigen()) return true;
    avisar("Error en la conexion con origen datos ");  // no error is pending that could describe it
    return false;
}

void frmImpTarifas::correr(const Corrida& corrida, const std::function<void()>& filas) {
    const auto error = trapped([&] {
        filas();
        MyBd()->Conexion()->CommitTrans();
    });
    if (error) MyBd()->Conexion()->RollbackTrans();
    avisar(error ? textoError(corrida, *error) : std::string(sExito));
    Unload();
}

std::string frmImpTarifas::textoError(const Corrida& corrida, const RuntimeError& error) {
    return joined({sRegistro, plainNumber(corrida.nFila), ". ", error.description()});
}

void frmImpTarifas::retirarArticulos(std::string_view sCampoMarca, std::int32_t IdMarca) {
    consultar(
        joined({"UPDATE Art Set Art_Estado=1, Art_FechaEstado = '", dayMonthYear(platform().clock().now()),
                "' WHERE Art_Estado =0 AND ", sCampoMarca, " = ", plainNumber(IdMarca)}));
}

void frmImpTarifas::mostrarProgreso(const Corrida& corrida, std::string_view sCodigo) {
    Label2.setCaption(joined({"Procesado registro ", plainNumber(corrida.nFila), " ", sCodigo}));
}

ObjectRef<Recordset> frmImpTarifas::buscarArticulo(std::string_view sColumna, std::string_view sValor) {
    return consultar(joined({"SELECT * FROM Art WHERE ", sColumna, " = '", sValor, "'"}));
}

void frmImpTarifas::agregarConstantes(EscrituraFila& escritura) {
    escritura.agregar(Art::Rod, nCero)
        .agregar(Art::Pas, nCero)
        .agregar(Art::Mat, nCero)
        .agregar(Art::TIPO, nUno)
        .agregar(Art::Alma, nUno);
}

std::int32_t frmImpTarifas::ultimoArticulo() {
    return toLong(consultar("SELECT MAX(Art_Id) FROM Art")->Fields(0), platform().locale());
}

std::int32_t frmImpTarifas::buscarArtPro(std::int32_t IdArt) {
    const ObjectRef<Recordset> rs =
        consultar(joined({"SELECT * FROM ArtPro WHERE ARP_Ida = ", plainNumber(IdArt),
                          " AND ARP_Idp = ", plainNumber(campos_.IdProveedor)}));
    return rs->RecordCount() > 0 ? toLong(rs->Fields(0), platform().locale()) : 0;
}

bool frmImpTarifas::escribirProveedor(const ObjectRef<HostDatabase>& bd, const FilaProveedor& fila,
                                      std::int32_t IdArtPro) {
    EscrituraFila escritura(bd, ArtPro::tabla);
    escritura.agregar(ArtPro::des, fila.vDescripcion)
        .agregar(ArtPro::Precio, fila.vPrecio)
        .agregar(ArtPro::Descuento, fila.vDescuento);
    if (IdArtPro != 0) {
        escritura.actualizar(condicion(ArtPro::Id, IdArtPro));
        return true;
    }
    std::string sMensaje;
    return escritura.agregar(ArtPro::Cop, fila.vCodigo)
        .agregar(ArtPro::Idp, campos_.IdProveedor)
        .agregar(ArtPro::Ida, fila.IdArt)
        .insertar(sMensaje);
}

}  // namespace pxtarvo
