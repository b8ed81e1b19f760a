#include "plugin/pxtarvor.h"

#include "import/frm_imp_tarifas.h"

namespace pxtarvo {

PXTarvor::PXTarvor(Entorno entorno) : entorno_(std::move(entorno)) {}

std::shared_ptr<PXTarvor> PXTarvor::crear(Entorno entorno) {
    auto instancia = std::make_shared<PXTarvor>(std::move(entorno));
    guardarInstancia(instancia);
    return instancia;
}

void PXTarvor::MyBd(ObjectRef<HostDatabase> vData) {
    bd_ = std::move(vData);
}

ObjectRef<HostDatabase> PXTarvor::MyBd() const {
    return bd_;
}

void PXTarvor::jImportacionTarifas() {
    frmImpTarifas ventana(platform());
    platform().desktop().showModal(ventana);
}

Platform& PXTarvor::platform() const {
    return *entorno_.platform;
}

ObjectRef<HostFieldHelper> PXTarvor::crearAyuda() const {
    return entorno_.crearAyuda();
}

}  // namespace pxtarvo
