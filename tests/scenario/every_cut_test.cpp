// A cut at every call: each procedure runs once to count the calls that cross its boundary, then once for
// every one of them with that one failing, and what each run leaves behind is held against what the procedure
// promises. Nothing here knows a single call; what differs between the procedures stands in one table.

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

#include "deletion/frm_borrado_articulos.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"
#include "stock/frm_existencias.h"
#include "tests/common/database_state.h"
#include "tests/scenario/cut_host.h"
#include "tests/scenario/memory_workbook.h"
#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

using Names = std::vector<std::string>;
using tests::Tables;

// Names of crossings that a run never reaches, and that it has passed before its first.
constexpr std::string_view never = "-";
constexpr std::string_view fromTheStart = "";

/// A procedure and what it promises. Places are names of crossings.
struct Procedure {
    std::string name;
    /// Given each window that is shown: opens the next one, or makes this one ready and answers with the
    /// control whose click is the run.
    std::function<Control*(portable::SimulatedDesktop&, Window&)> prepare;
    bool inTransaction = false;          ///< the host has begun a transaction
    std::string success{};               ///< the message at the end, if any
    bool closes = true;                  ///< at the end, and at a trapped error
    std::string_view trapAfter = never;  ///< errors are trapped behind this
    std::string_view row = never;        ///< each begins a row; the message of a trapped error names the row
    bool hasTransaction = true;  ///< or rolling back is itself refused, and leaves the procedure as its error
    bool undone = true;          ///< by a trapped error
    std::string_view refusal = never;    ///< the refused writes that end the run begin like this
    bool refusalSaid = false;            ///< as any other trapped error
    std::string_view busyUntil = never;  ///< an error up to the last of these leaves the pointer busy
    bool busyUntilFirst = false;         ///< only up to the first of them
    bool disabled = false;               ///< and the window disabled with it
};

/// What a run left: its messages, and which of "closed", "disabled", "busy", "transaction", "file" hold.
using Outcome = std::multiset<std::string>;

void PrintTo(const Procedure& procedure, std::ostream* out) {
    *out << procedure.name;
}

std::string report(ErrorNumber number, std::string_view text) {
    return joined({"Error '", plainNumber(static_cast<std::int32_t>(number)),
                   "' en tiempo de ejecución:\r\n\r\n", text});
}

std::string noTransaction() {
    return report(ErrorNumber::NoTransactionOpen, RuntimeError(ErrorNumber::NoTransactionOpen).description());
}

/// Position of the first, or last, crossing of this name; before the first one for fromTheStart, behind the
/// last one for never.
std::ptrdiff_t placeOf(const Names& names, std::string_view name, bool last = false) {
    if (name == fromTheStart) return -1;
    if (last) return names.rend() - std::ranges::find(names.rbegin(), names.rend(), name) - 1;
    return std::ranges::find(names, name) - names.begin();
}

class EveryCut : public Scene, public ::testing::WithParamInterface<Procedure> {
  protected:
    void SetUp() override {
        createEmptyDealer();
        native(R"(
            INSERT INTO Art (Art_Id,ART_Cod,ART_DES,ART_PVE,Art_Mar,Art_Marca,Art_Estado) VALUES
                (1,'0.001','UNO',5,1,1,0), (2,'0.002','DOS',8,1,1,0), (3,'3','TRES',1,9,9,0),
                (4,'03','CERO TRES',1,9,9,0), (5,'1','SIN CERO',1,9,9,0), (6,'01','CON CERO',1,9,9,0),
                (7,'B1','BAJA',1,9,9,1), (8,'B2','BAJA',1,9,9,1);
            INSERT INTO ArtPro (ARP_Ida,ARP_Idp,ARP_Cop) VALUES (1,4,'0.001'), (3,4,'3'), (5,4,'1');
            INSERT INTO Aat (Aat_Id,Aat_C01) VALUES (1,'ANTES');
            INSERT INTO Exis (Exis_IdArt,Exis_CodArt,Exis_alma,Exis_Cantidad) VALUES
                (1,'0.001',1,12), (2,'0.002',1,3), (4,'03',1,3), (7,'B1',1,0), (8,'B2',1,0), (5,'1',2,5),
                (3,'3',1,2);
            INSERT INTO Ubi (Ubi_IdArt,Ubi_IdAlm) VALUES (1,1);)");
        dropHost();
        std::filesystem::copy(options.database, folder / "before.db");
        std::filesystem::create_directories(folder / "c/TARVO/STOCK");
        options.articleFile = (folder / "articulo.tdw").string();
        std::ofstream articles(options.articleFile);
        for (const char* code : {"0.001", "0.002", "NO"}) {
            for (int field = 0; field < 17; ++field) articles << '\x01';
            articles << code << "\x01P-04\x01\x01"
                     << "2.5\r\n";
        }
        articles.close();
        options.recorder.reset();
        if (GetParam().name.starts_with("list of 2006")) {
            const auto row = [](const char* code, double price) {
                return ListRow{Null{}, code, Null{}, "LISTA", price, "C"};
            };
            options.makeSource = memorySource({row("0.001", 6), row("0.009", 7), row("0.002", 9)});
        } else {
            options.makeSource = memorySource(
                {listRow("0.001", 6.0, "C"), listRow("0.002", 9.0, "M"), listRow("0.009", 7.0, "A")});
        }
        options.makeSpreadsheet =
            memoryWorkbook({{"0.001", "UNO", "840001"}, {"N2", "DOS", "840002"}, {"N3", "TRES", "840001"}},
                           [this](const char* name) { cutHost->cut->crossing(name); });
    }

    void newHost(bool newDealer) {
        cutHost.reset();
        if (newDealer) {
            std::filesystem::copy_file(folder / "before.db", options.database,
                                       std::filesystem::copy_options::overwrite_existing);
        }
        cutHost = std::make_unique<CutHost>(options);
        cutHost->user().yesNo = MessageAnswer::Yes;
    }

    Tables tables() { return tests::tablesOf(*cutHost->connection()); }

    Outcome run(std::size_t at, Fault fault) {
        if (GetParam().inTransaction) cutHost->connection()->BeginTrans();
        Outcome outcome;
        const auto note = [&](bool holds, const char* fact) {
            if (holds) outcome.insert(fact);
        };
        const std::size_t shown = cutHost->user().messages().size();
        cutHost->user().onWindowShown = [&](Window& window) {
            Control* const button = GetParam().prepare(cutHost->desktop(), window);
            if (!button) return;
            cutHost->cut->arm(at, fault);
            cutHost->desktop().click(*button);
            cutHost->cut->disarm();
            note(window.unloaded(), "closed");
            note(!window.enabled(), "disabled");
            note(cutHost->desktop().pointer() != PointerShape::Default, "busy");
        };
        cutHost->run();
        const auto& messages = cutHost->user().messages();
        for (auto message = messages.begin() + shown; message != messages.end(); ++message) {
            if (message->message.buttons == MessageButtons::Ok) outcome.insert(message->message.text);
        }
        note(tests::transactionOpen(*cutHost->connection()), "transaction");
        note(cutHost->fileOpen(), "file");
        EXPECT_EQ(cutHost->violations(), std::vector<std::string>());
        return outcome;
    }

    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    /// What the whole run leaves.
    static Outcome success() {
        Outcome outcome;
        if (!GetParam().success.empty()) outcome.insert(GetParam().success);
        if (GetParam().closes) outcome.insert("closed");
        return outcome;
    }

    /// What an error at this crossing leaves, but for the tables, and whether it undoes the run.
    std::pair<Outcome, bool> afterError(std::ptrdiff_t at, bool said = true) const {
        const Procedure& procedure = GetParam();
        Outcome outcome;
        const auto before = names.begin() + at;
        if (std::find(names.begin(), before, "files.open") != before) outcome.insert("file");
        const bool trapped =
            at > placeOf(names, procedure.trapAfter) && at <= placeOf(names, "host.CommitTrans");
        if (!trapped) {
            outcome.insert(report(cutNumber, cutText));
            const bool busy = procedure.busyUntil != never &&
                              at <= placeOf(names, procedure.busyUntil, !procedure.busyUntilFirst);
            if (busy) outcome.insert("busy");
            if (busy && procedure.disabled) outcome.insert("disabled");
            if (procedure.inTransaction) outcome.insert("transaction");
            return {outcome, false};
        }
        if (!procedure.hasTransaction) return {Outcome{noTransaction()}, false};
        if (procedure.closes) outcome.insert("closed");
        const std::string row = plainNumber(rowAt[static_cast<std::size_t>(at)]);
        if (said)
            outcome.insert(procedure.row == never ? cutText : joined({"Registro ", row, ". ", cutText}));
        return {outcome, procedure.undone};
    }

    /// Every table holds what it did in the whole run, but for one row at most of each; not all do.
    void expectOneRowLess(const Tables& left) {
        // The identity that the database gave, at the head of the row, tells the order only.
        const auto contents = [](const std::vector<std::string>& lines) {
            std::multiset<std::string> texts;
            for (const std::string& line : lines) texts.insert(line.substr(line.find('|', 1)));
            return texts;
        };
        const auto rowsOnlyIn = [&](const Tables& some, const Tables& others, const std::string& name) {
            std::vector<std::string> rows;
            std::ranges::set_difference(contents(some.at(name)), contents(others.at(name)),
                                        std::back_inserter(rows));
            return rows;
        };
        const Tables& whole = tablesAt.back();
        std::size_t differing = 0;
        for (const auto& [name, rows] : left) {
            const auto added = rowsOnlyIn(left, whole, name);
            const auto missing = rowsOnlyIn(whole, left, name);
            EXPECT_LE(added.size(), 1u) << name << ::testing::PrintToString(added);
            EXPECT_LE(missing.size(), 1u) << name << ::testing::PrintToString(missing);
            differing += added.size() + missing.size();
        }
        EXPECT_GT(differing, 0u);
    }

    /// The next run in the same process does what the first one should have.
    void expectNextRun(const Outcome& outcome, const Tables& left) {
        // A file number that is left open stays so, and blocks its next use, as long as the module stands.
        if (outcome.contains("file")) newHost(false);
        if (outcome.contains("transaction"))
            cutHost->connection()->RollbackTrans();  // as a host does with a failed run
        EXPECT_EQ(run(nowhere, Fault::Raised), success()) << "the next run";
        if (left == tablesAt.front()) {
            EXPECT_EQ(tables(), tablesAt.back()) << "the next run";
        }
    }

    void cutAt(std::size_t at, Fault fault) {
        newHost(true);
        const Outcome outcome = run(at, fault);
        const Tables left = tables();
        const bool ends = fault == Fault::Raised || (fault == Fault::Refused && endsAtRefusal(names[at]));
        if (ends) {
            const bool said = fault == Fault::Raised || GetParam().refusalSaid;
            const auto [expected, undone] = afterError(static_cast<std::ptrdiff_t>(at), said);
            EXPECT_EQ(outcome, expected);
            EXPECT_EQ(left, tablesAt[undone || outcome.contains("transaction") ? 0 : at]);
        } else {
            Outcome expected = success();
            if (fault == Fault::WindowClosed && !GetParam().closes) expected.insert("closed");
            EXPECT_EQ(outcome, expected);
            if (fault == Fault::Refused) expectOneRowLess(left);
            if (fault == Fault::WindowClosed) {
                EXPECT_EQ(left, tablesAt.back());
            }
        }
        if (fault != Fault::WindowClosed) expectNextRun(outcome, left);
    }

    static bool endsAtRefusal(std::string_view name) { return name.starts_with(GetParam().refusal); }

    std::unique_ptr<CutHost> cutHost;
    Names names;                   ///< the crossings of the whole run
    std::vector<int> rowAt;        ///< the row at each
    std::vector<Tables> tablesAt;  ///< before each, and at the end
};

TEST_P(EveryCut, LeavesWhatTheProcedurePromises) {
    newHost(true);
    const std::shared_ptr<Cut> cut = cutHost->cut;
    cut->onCrossing = [&] { tablesAt.push_back(tables()); };
    EXPECT_EQ(run(nowhere, Fault::Raised), success());
    names = cut->names;
    tablesAt.push_back(tables());
    int row = 0;
    for (const std::string& name : names) rowAt.push_back(row += name == GetParam().row);

    for (std::size_t at = 0; at < names.size(); ++at) {
        SCOPED_TRACE("crossing " + std::to_string(at) + ", " + names[at]);
        const bool yields = names[at] == "yield";
        cutAt(at, yields ? Fault::WindowClosed : Fault::Raised);
        if (names[at].find(' ') != std::string::npos) cutAt(at, Fault::Refused);  // a write
        if (HasFailure()) break;  // the first is enough to read
    }
}

auto import(std::string_view year, int option = 0) {
    return [=](portable::SimulatedDesktop& desktop, Window& shown) -> Control* {
        auto& window = dynamic_cast<frmImpTarifas&>(shown);
        desktop.choose(window.Combo1, year);
        desktop.click(window.Option1[option]);
        return &window.XPButton1;
    };
}

auto button(PushButton frmImpTarifas::*itsButton) {
    return [=](portable::SimulatedDesktop&, Window& window) -> Control* {
        return &(dynamic_cast<frmImpTarifas&>(window).*itsButton);
    };
}

/// The window that the import window's `opener` opens, once it is shown.
template <class Opened>
Opened* opened(portable::SimulatedDesktop& desktop, Window& shown, PushButton frmImpTarifas::*opener) {
    if (auto* const import = dynamic_cast<frmImpTarifas*>(&shown)) desktop.click(import->*opener);
    return dynamic_cast<Opened*>(&shown);
}

Control* stockWindow(portable::SimulatedDesktop& desktop, Window& shown) {
    auto* const window = opened<frmExistencias>(desktop, shown, &frmImpTarifas::cmdStock);
    if (!window) return nullptr;
    desktop.type(window->Text1[1], "24");
    desktop.type(window->Text1[3], "SAME");
    for (int tab = 0; tab < 2; ++tab) desktop.press(vkTab);  // to the description, and to the button
    return &window->XPButton1;
}

Control* searchWindow(portable::SimulatedDesktop& desktop, Window& shown) {
    auto* const window = opened<frmBorradoArticulos>(desktop, shown, &frmImpTarifas::cmdBorrado);
    if (!window) return nullptr;
    desktop.click(window->Option2);
    return &window->cmdInicio;
}

Control* deletionWindow(portable::SimulatedDesktop& desktop, Window& shown) {
    Control* const search = searchWindow(desktop, shown);
    if (!search) return nullptr;
    desktop.click(*search);
    return &dynamic_cast<frmBorradoArticulos&>(shown).cmdBorrar;
}

constexpr const char* imported = "Proceso finalizado con exito";
constexpr std::string_view begin = "host.BeginTrans";
constexpr std::string_view firstRow = "source.MoveFirst";

const Procedure procedures[] = {
    {.name = "yearly list",
     .prepare = import("2007"),
     .success = imported,
     .trapAfter = firstRow,
     .row = "yield",
     .refusal = "insert Art ",
     .refusalSaid = true},
    {.name = "yearly list counted",
     .prepare = import("2009"),
     .success = imported,
     .trapAfter = firstRow,
     .row = "yield",
     .refusal = "insert Art ",
     .refusalSaid = true},
    {.name = "list of 2006",
     .prepare = import("2006"),
     .inTransaction = true,
     .success = imported,
     .trapAfter = firstRow,
     .row = "yield"},
    // Commit and roll back are refused both.
    {.name = "list of 2006 without transaction",
     .prepare = import("2006"),
     .success = noTransaction(),
     .closes = false,
     .trapAfter = firstRow,
     .hasTransaction = false,
     .undone = false},
    {.name = "barcode list",
     .prepare = import("2008", 1),
     .success = imported,
     .trapAfter = fromTheStart,
     .row = "sheet.row",
     .undone = false,
     .refusal = "insert "},
    {.name = "location update",
     .prepare = button(&frmImpTarifas::XPButton4),
     .success = "Proceso de importacion de C:\\tarvo\\articulo.tdw finalizado",
     .closes = false},
    {.name = "code correction",
     .prepare = button(&frmImpTarifas::XPButton3),
     .success = "proceso concluido",
     .closes = false,
     .trapAfter = begin},
    {.name = "stock file", .prepare = stockWindow, .success = imported, .busyUntil = "rows.Eof"},
    {.name = "search",
     .prepare = searchWindow,
     .closes = false,
     .busyUntil = "rows.RecordCount",
     .busyUntilFirst = true,
     .disabled = true},
    {.name = "deletion",
     .prepare = deletionWindow,
     .success = "Proceso de borrado finalizado",
     .trapAfter = "rows.MoveFirst",
     .refusal = "delete "}};

INSTANTIATE_TEST_SUITE_P(, EveryCut, ::testing::ValuesIn(procedures),
                         [](const auto& info) { return replaced(info.param.name, " ", "_"); });

}  // namespace

}  // namespace pxtarvo::test
