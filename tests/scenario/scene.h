#pragma once

// A dealer's database in a folder of its own, the development host over it, and a user who works in the
// import window. The host hands over a new context after every use and notes what breaks its rules; a scene
// ends with the check that nothing did. With PXTARVO_SERVER_CURSORS set the host's results are on the server.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "devhost/dev_host.h"
#include "import/frm_imp_tarifas.h"
#include "tests/common/memory_list.h"
#include "tests/common/temporary_folder.h"

namespace pxtarvo::test {

using tests::sample;

inline constexpr CalendarTime sceneTime{2012, 7, 25, 10, 30, 0};

/// What the user changes in the import window before pressing "Iniciar proceso"; empty leaves a field alone.
struct ImportSteps {
    std::string year{};
    std::string file{};
    std::optional<std::string> supplier{};
    std::optional<std::string> brand{};
};

class Scene : public ::testing::Test {
  protected:
    Scene();
    ~Scene() override;

    /// The host's tables without rows, but for supplier 24 (Pro_ID 4) and brand SAME (Marca_ID 1).
    void createEmptyDealer();
    /// The sample dealer.
    void createSampleDealer();
    /// Runs a statement in the host's dialect on the database, before or after a run.
    void sql(std::string_view statement);
    /// Runs a script in the database's own dialect.
    void native(const std::string& script);
    /// Makes the table's first column, its identifier, wider than 32 bits: 5,000,000,000 higher.
    void widenIdentifier(const std::string& table);
    /// The values of a query's rows, a row a text with "|" between them, Null as "NULL".
    std::vector<std::string> rows(std::string_view query);
    std::string value(std::string_view query);

    /// The host, made at the first call with `options`.
    devhost::DevHost& host();
    devhost::DevUser& user() { return host().user(); }
    /// Drops the host; the next use makes a new one with the options as they are then.
    void dropHost();
    /// Opens the import window and lets `actions` work in it.
    void inWindow(std::function<void(frmImpTarifas&)> actions);
    /// Opens the import window, clicks `button` in it and lets `actions` work in the window that this opens.
    template <class Opened>
    void inWindowOf(PushButton frmImpTarifas::*button, std::function<void(Opened&)> actions) {
        user().onWindowShown = [&, button](Window& window) {
            if (auto* const import = dynamic_cast<frmImpTarifas*>(&window)) {
                host().desktop().click(import->*button);
            } else {
                actions(dynamic_cast<Opened&>(window));
            }
        };
        host().run();
    }
    /// The names of the controls that Tab reaches, from the one with the focus until it comes round.
    std::vector<std::string> tabRound(Window& window);
    /// The usual way through the window.
    void import(const ImportSteps& steps);
    void fillIn(frmImpTarifas& window, const ImportSteps& steps);
    void press(frmImpTarifas& window) { host().desktop().click(window.XPButton1); }
    /// Opens the import window, fills it in, chooses the list option and presses `button`. True when the run
    /// closed the window.
    bool run(PushButton frmImpTarifas::*button, const ImportSteps& steps = {}, int option = 0);
    /// The host refuses the writes of this kind into the table from the `first` one on (1-based).
    void refuse(devhost::WriteKind kind, std::string_view table, int first = 1);
    /// Notes the type of every value written from now on by its column: the record shows numbers of all types
    /// alike.
    void noteTypes(std::map<std::string, Variant::Type>& types);

    std::vector<std::string> messageTexts();
    /// The record's lines of this call.
    std::vector<std::string> recordOf(std::string_view call) const;
    /// The record is the one kept under this name. With PXTARVO_KEEP_RECORDS set it is written anew, to be
    /// read line by line before it is committed.
    void expectKeptRecord(std::string_view name) const;
    /// Every byte of the database file.
    std::string databaseBytes();

    tests::TemporaryFolder made;
    const std::filesystem::path folder = made.file("");
    devhost::DevHostOptions options;
    std::vector<std::string> record;
    /// For the tests of a host that itself breaks a rule.
    bool violationsExpected = false;

  private:
    std::unique_ptr<devhost::DevHost> host_;
};

}  // namespace pxtarvo::test
