#include "tests/scenario/deletion_scene.h"

#include "platform/values/conversion.h"

namespace pxtarvo::test {

void DeletionScene::SetUp() {
    createEmptyDealer();
    sql("INSERT INTO Marcas (Marca_ID,Marca_Des,Marca_CodAbrev) VALUES (12,'Otra marca','OTRA')");
    desktop = &host().desktop();
}

void DeletionScene::article(const std::string& code, const std::string& columns, const std::string& values) {
    sql("INSERT INTO Art (ART_Cod,ART_DES,Art_Marca" + columns + ") VALUES ('" + code + "','Pieza " + code +
        "',1" + values + ")");
}

void DeletionScene::inDeletion(std::function<void(frmBorradoArticulos&)> actions) {
    inWindowOf<frmBorradoArticulos>(&frmImpTarifas::cmdBorrado, std::move(actions));
}

void DeletionScene::search(frmBorradoArticulos& window, const SearchSteps& steps) {
    if (!steps.brand.empty()) desktop->type(window.Text1[3], steps.brand);
    if (!steps.until.empty()) desktop->type(window.Text1[1], steps.until);
    if (steps.state) desktop->click(window.*steps.state);
    desktop->click(window.cmdInicio);
}

std::vector<std::string> DeletionScene::found(const SearchSteps& steps) {
    std::vector<std::string> codes;
    inDeletion([&](frmBorradoArticulos& window) {
        search(window, steps);
        if (window.unloaded()) {
            codes.emplace_back("(closed)");
            return;
        }
        const ObjectRef<Recordset> rows = window.dbgDatos.dataSource()->Clone();
        for (; !rows->Eof(); rows->MoveNext()) {
            codes.push_back(joinedText(rows->Fields("Art_Cod"), spanishLocale()));
        }
    });
    return codes;
}

}  // namespace pxtarvo::test
