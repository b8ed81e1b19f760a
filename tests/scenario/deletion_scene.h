#pragma once

// A dealer with a few articles, and a user who works in the deletion window.

#include "deletion/frm_borrado_articulos.h"
#include "tests/scenario/scene.h"

namespace pxtarvo::test {

struct SearchSteps {
    std::string brand{};
    std::string until{};
    OptionButton frmBorradoArticulos::*state = nullptr;  ///< left as the window loads it when empty
};

class DeletionScene : public Scene {
  protected:
    void SetUp() override {
        createEmptyDealer();
        sql("INSERT INTO Marcas (Marca_ID,Marca_Des,Marca_CodAbrev) VALUES (12,'Otra marca','OTRA')");
        desktop = &host().desktop();
    }

    /// Adds an article of brand 1; empty `values` are left to the database.
    void article(const std::string& code, const std::string& columns = "", const std::string& values = "") {
        sql("INSERT INTO Art (ART_Cod,ART_DES,Art_Marca" + columns + ") VALUES ('" + code + "','Pieza " +
            code + "',1" + values + ")");
    }
    void inDeletion(std::function<void(frmBorradoArticulos&)> actions) {
        inWindowOf<frmBorradoArticulos>(&frmImpTarifas::cmdBorrado, std::move(actions));
    }
    void search(frmBorradoArticulos& window, const SearchSteps& steps = {}) {
        if (!steps.brand.empty()) desktop->type(window.Text1[3], steps.brand);
        if (!steps.until.empty()) desktop->type(window.Text1[1], steps.until);
        if (steps.state) desktop->click(window.*steps.state);
        desktop->click(window.cmdInicio);
    }

    portable::SimulatedDesktop* desktop = nullptr;
};

}  // namespace pxtarvo::test
