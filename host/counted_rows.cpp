#include "host/counted_rows.h"

#include "platform/client_recordset.h"

namespace pxtarvo {

ObjectRef<Recordset> contado(ObjectRef<Recordset> resultado) {
    if (!resultado || resultado->State() == adStateClosed || resultado->RecordCount() >= 0) return resultado;
    auto filas = readToEnd(*resultado);
    resultado->Close();
    return makeObject<ClientRecordset>(std::move(filas));
}

}  // namespace pxtarvo
