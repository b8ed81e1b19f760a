#include "tests/scenario/scene.h"

#include <cstdlib>
#include <fstream>

#include "devhost/dealer/sample_dealer.h"
#include "devhost/dealer/schema.h"
#include "platform/portable/clocks.h"
#include "platform/portable/sqlite/sqlite_connection.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"
#include "tests/common/database_state.h"

namespace pxtarvo::test {

Scene::Scene() {
    options.database = (folder / "dealer.db").string();
    options.driveC = (folder / "c").string();
    options.clock = std::make_shared<portable::FixedClock>(sceneTime);
    options.recorder =
        std::make_shared<devhost::Recorder>([this](std::string_view line) { record.emplace_back(line); });
    options.rotateContexts = true;
    if (std::getenv("PXTARVO_SERVER_CURSORS")) options.cursor = devhost::CursorLocation::Server;
    std::filesystem::create_directory(options.driveC);
}

Scene::~Scene() {
    dropHost();
}

void Scene::dropHost() {
    if (host_ && !violationsExpected) {
        EXPECT_EQ(host_->violations(), std::vector<std::string>());
    }
    host_.reset();
}

void Scene::createEmptyDealer() {
    dropHost();
    std::filesystem::remove(options.database);
    const auto connection = portable::SqliteConnection::create(options.database, *options.clock);
    devhost::createSchema(*connection);
    connection->Execute("INSERT INTO Pro (Pro_ID,Pro_COD,Pro_NOM,Pro_TIPDOC) VALUES (4,24,'RECAMBIOS',0)",
                        -1);
    connection->Execute("INSERT INTO Marcas (Marca_ID,Marca_Des,Marca_CodAbrev) VALUES (1,'Same','SAME')",
                        -1);
}

void Scene::createSampleDealer() {
    dropHost();
    std::filesystem::remove(options.database);
    const auto connection = portable::SqliteConnection::create(options.database, *options.clock);
    devhost::createSchema(*connection);
    devhost::fillSampleDealer(*connection);
}

void Scene::sql(std::string_view statement) {
    host().connection()->Execute(statement, adOptionUnspecified);
}

void Scene::native(const std::string& script) {
    dynamic_cast<portable::SqliteConnection&>(*host().connection()).runNative(script);
}

void Scene::widenIdentifier(const std::string& table) {
    native("CREATE TABLE made AS SELECT sql FROM sqlite_master WHERE name = '" + table + "'");
    dropHost();
    std::string made = value("SELECT sql FROM made");
    const std::string_view key = "INTEGER PRIMARY KEY AUTOINCREMENT";
    made.replace(made.find(key), key.size(), "DECIMAL(19,0) PRIMARY KEY");
    native("DROP TABLE made; ALTER TABLE " + table + " RENAME TO narrow; " + made + "; INSERT INTO " + table +
           " SELECT * FROM narrow; DROP TABLE narrow; UPDATE " + table + " SET " + table + "_Id = " + table +
           "_Id + 5000000000");
    dropHost();
}

std::vector<std::string> Scene::rows(std::string_view query) {
    return tests::rowsOf(*host().connection(), query);
}

std::string Scene::value(std::string_view query) {
    return rows(query).at(0);
}

devhost::DevHost& Scene::host() {
    if (!host_) {
        host_ = std::make_unique<devhost::DevHost>(options);
        native("PRAGMA synchronous = OFF");  // the tests' files need not outlive the machine
    }
    return *host_;
}

void Scene::inWindow(std::function<void(frmImpTarifas&)> actions) {
    user().onWindowShown = [&](Window& window) { actions(dynamic_cast<frmImpTarifas&>(window)); };
    host().run();
}

std::vector<std::string> Scene::tabRound(Window& window) {
    std::vector<std::string> names;
    Control* const first = window.activeControl();
    do {
        names.push_back(window.activeControl()->fullName());
        host().desktop().press(vkTab);
    } while (window.activeControl() != first);
    return names;
}

void Scene::fillIn(frmImpTarifas& window, const ImportSteps& steps) {
    portable::SimulatedDesktop& desktop = host().desktop();
    if (!steps.year.empty()) desktop.choose(window.Combo1, steps.year);
    const auto typeAndLeave = [&](int field, std::string_view text) {
        desktop.type(window.Text1[field], text);
        desktop.press(vkReturn);
    };
    if (!steps.file.empty()) typeAndLeave(0, steps.file);
    if (steps.supplier) typeAndLeave(1, *steps.supplier);
    if (steps.brand) typeAndLeave(3, *steps.brand);
}

void Scene::import(const ImportSteps& steps) {
    inWindow([&](frmImpTarifas& window) {
        fillIn(window, steps);
        press(window);
    });
}

bool Scene::run(PushButton frmImpTarifas::*button, const ImportSteps& steps, int option) {
    bool closed = false;
    inWindow([&](frmImpTarifas& window) {
        if (option != 0) host().desktop().click(window.Option1[option]);
        fillIn(window, steps);
        host().desktop().click(window.*button);
        closed = window.unloaded();
    });
    return closed;
}

void Scene::refuse(devhost::WriteKind kind, std::string_view table, int first) {
    host().state().beforeWrite =
        [=, seen = 0](const devhost::HostWrite& write) mutable -> std::optional<std::string> {
        if (write.kind == kind && write.table == table && ++seen >= first) return "no";
        return std::nullopt;
    };
}

void Scene::noteTypes(std::map<std::string, Variant::Type>& types) {
    host().state().beforeWrite = [&types](const devhost::HostWrite& write) -> std::optional<std::string> {
        for (const devhost::WrittenColumn& column : write.columns) types[column.name] = column.value.type();
        return std::nullopt;
    };
}

std::vector<std::string> Scene::messageTexts() {
    std::vector<std::string> texts;
    for (const devhost::ShownMessage& shown : user().messages()) texts.push_back(shown.message.text);
    return texts;
}

std::vector<std::string> Scene::recordOf(std::string_view call) const {
    std::vector<std::string> lines;
    const std::string start = "{\"call\":\"" + std::string(call) + "\"";
    for (const std::string& line : record) {
        if (line.starts_with(start)) lines.push_back(line);
    }
    return lines;
}

void Scene::expectKeptRecord(std::string_view name) const {
    const std::string kept = joined({PXTARVO_GOLDEN_DIR, "/", name, ".jsonl"});
    if (std::getenv("PXTARVO_KEEP_RECORDS")) {
        std::ofstream file(kept);
        for (const std::string& line : record) file << line << '\n';
    }
    std::vector<std::string> lines;
    std::ifstream file(kept);
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    EXPECT_EQ(record, lines);
}

std::string Scene::databaseBytes() {
    return tests::bytesOf(options.database);
}

}  // namespace pxtarvo::test
