#include "import/frm_imp_tarifas.h"

namespace pxtarvo {

bool frmImpTarifas::msConectarOrigen() {
    cnOrigen = platform().createConnection();
    cnOrigen->ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + Text1[0].text() +
                               ";Persist Security Info=False");
    cnOrigen->Open("", "", adOptionUnspecified);
    return cnOrigen->State() != adStateClosed;
}

}  // namespace pxtarvo
