#include "import/import_run.h"

#include "fields/window_texts.h"
#include "import/run_texts.h"
#include "platform/error_trap.h"
#include "platform/values/date_text.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

Corrida::Corrida(VistaImportacion ventana) : ventana_(std::move(ventana)) {}

bool Corrida::abrirOrigen() {
    if (ventana_.msConectarOrigen()) return true;
    avisar("Error en la conexion con origen datos ");  // no error is pending that could describe it
    return false;
}

void Corrida::consultarOrigen(Recordset& rsOrigen, const std::string& sSQL) {
    rsOrigen.Open(sSQL, ventana_.cnOrigen, adOpenDynamic, adLockOptimistic, adCmdText);
}

void Corrida::correr(Transaccion transaccion, const std::function<void()>& filas) {
    bool bComenzada = transaccion == Transaccion::DelAnfitrion;
    const auto error = trapped([&] {
        if (!bComenzada) MyBd()->Conexion()->BeginTrans();
        bComenzada = true;
        filas();
        MyBd()->Conexion()->CommitTrans();
    });
    if (error) {
        deshacer(bComenzada);
        avisar(textoError(*error));
    } else {
        avisar(sExito);
    }
    ventana_.Unload();
}

std::string Corrida::textoError(const RuntimeError& error) const {
    return insisted([&] { return joined({sRegistro, plainNumber(nFila_), ". ", error.description()}); });
}

void Corrida::retirarArticulos(std::string_view sCampoMarca, std::int32_t IdMarca) {
    consultar(joined({"UPDATE Art Set Art_Estado=1, Art_FechaEstado = '",
                      dayMonthYear(ventana_.platform.clock().now()), "' WHERE Art_Estado =0 AND ",
                      sCampoMarca, " = ", plainNumber(IdMarca)}));
}

void Corrida::mostrarProgreso(std::string_view sCodigo) {
    ventana_.Label2.setCaption(joined({"Procesado registro ", plainNumber(nFila_), " ", sCodigo}));
}

ObjectRef<Recordset> Corrida::buscarArticulo(std::string_view sColumna, std::string_view sValor) {
    return consultar(joined({"SELECT * FROM Art WHERE ", sColumna, " = '", sValor, "'"}));
}

void Corrida::agregarConstantes(EscrituraFila& escritura) {
    escritura.agregar({Art::Rod, Art::Pas, Art::Mat}, nCero).agregar({Art::TIPO, Art::Alma}, nUno);
}

std::int32_t Corrida::ultimoArticulo() {
    return toLong(consultar("SELECT MAX(Art_Id) FROM Art")->Fields(0), locale());
}

std::int32_t Corrida::buscarArtPro() {
    const ObjectRef<Recordset> rs =
        consultar(joined({"SELECT * FROM ArtPro WHERE ARP_Ida = ", plainNumber(IdArt_),
                          " AND ARP_Idp = ", plainNumber(ventana_.campos.IdProveedor)}));
    return rs->RecordCount() > 0 ? toLong(rs->Fields(0), locale()) : 0;
}

bool Corrida::escribirProveedor(const ObjectRef<HostDatabase>& bd, const FilaProveedor& fila,
                                std::int32_t IdArtPro) {
    EscrituraFila escritura(bd, ArtPro::tabla);
    escritura.agregar(ArtPro::des, fila.vDescripcion)
        .agregar(ArtPro::Precio, fila.vPrecio)
        .agregar(ArtPro::Descuento, fila.vDescuento);
    if (IdArtPro != 0) {
        escritura.actualizar(condicion(ArtPro::Id, IdArtPro));
        return true;
    }
    return escritura.agregar(ArtPro::Cop, fila.vCodigo)
        .agregar(ArtPro::Idp, ventana_.campos.IdProveedor)
        .agregar(ArtPro::Ida, IdArt_)
        .insertar(sMensaje_);
}

}  // namespace pxtarvo
