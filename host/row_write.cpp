#include "host/row_write.h"

#include "platform/values/conversion.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {
constexpr std::int32_t nLimpiarTodo = 0;
constexpr std::int32_t nModoAgregar = 2;
}  // namespace

EscrituraFila::EscrituraFila(const ObjectRef<HostDatabase>& bd, const Tabla& tabla, AbrirCon primero)
    : bd_(bd) {
    if (primero == AbrirCon::Limpiar) bd_->Limpiar(nLimpiarTodo);
    bd_->Tabla(tabla.sNombre);
    if (primero == AbrirCon::Tabla) bd_->Limpiar(nLimpiarTodo);
}

EscrituraFila& EscrituraFila::agregar(const Columna& columna, const Variant& vValor) {
    bd_->Campos()->Agregar(columna.sNombre, static_cast<std::int32_t>(columna.nTipo), vValor, nModoAgregar);
    return *this;
}

EscrituraFila& EscrituraFila::agregar(std::initializer_list<Columna> columnas, const Variant& vValor) {
    for (const Columna& columna : columnas) agregar(columna, vValor);
    return *this;
}

EscrituraFila& EscrituraFila::agregarFechaServidor(const Columna& columna) {
    return agregar(columna, Variant(sFechaServidor));
}

void EscrituraFila::actualizar(std::string_view sCondicion) {
    bd_->Condicion(sCondicion);
    std::string sMensaje;
    bd_->Ejecutar(sMensaje);
}

bool EscrituraFila::insertar(std::string& sMensaje) {
    bd_->Condicion("");
    return bd_->Insertar(sMensaje);
}

bool EscrituraFila::borrar(std::string_view sCondicion, std::string& sMensaje) {
    bd_->Condicion(sCondicion);
    return bd_->Borrar(sMensaje);
}

std::string condicion(const Columna& clave, std::int32_t nValor) {
    return joined({" WHERE ", clave.sNombre, " = ", plainNumber(nValor)});
}

std::string condicion(const Columna& clave, const Variant& vValor, const Locale& locale) {
    return joined({" WHERE ", clave.sNombre, " = ", joinedText(vValor, locale)});
}

}  // namespace pxtarvo
