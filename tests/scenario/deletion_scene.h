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
    void SetUp() override;

    /// Adds an article of brand 1; empty `values` are left to the database.
    void article(const std::string& code, const std::string& columns = "", const std::string& values = "");
    void inDeletion(std::function<void(frmBorradoArticulos&)> actions);
    void search(frmBorradoArticulos& window, const SearchSteps& steps = {});
    /// The codes that a search finds; "(closed)" when it closes the window.
    std::vector<std::string> found(const SearchSteps& steps);

    portable::SimulatedDesktop* desktop = nullptr;
};

}  // namespace pxtarvo::test
