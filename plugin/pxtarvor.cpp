#include "plugin/pxtarvor.h"

#include "import/frm_imp_tarifas.h"

namespace pxtarvo {

std::shared_ptr<PXTarvor> PXTarvor::crear(Entorno entorno) {
    auto instancia = std::make_shared<PXTarvor>(std::move(entorno));
    guardarInstancia(instancia);
    return instancia;
}

void PXTarvor::jImportacionTarifas() {
    frmImpTarifas ventana(platform());
    platform().desktop().showModal(ventana);
}

}  // namespace pxtarvo
