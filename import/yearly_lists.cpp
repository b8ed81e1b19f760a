#include "import/frm_imp_tarifas.h"

namespace pxtarvo {

void frmImpTarifas::msImportarTarifa2007() {
    msImportarTarifa(formato2007);
}

void frmImpTarifas::msImportarTarifa2008() {
    msImportarTarifa(formato2008);
}

void frmImpTarifas::msImportarTarifa2009() {
    msImportarTarifa(formato2009);
}

void frmImpTarifas::msImportarTarifa2010(std::string& sTabla) {
    msImportarTarifa(formato2010(sTabla));
}

}  // namespace pxtarvo
