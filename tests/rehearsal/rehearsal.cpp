#include "tests/rehearsal/rehearsal.h"

#include <algorithm>
#include <climits>
#include <filesystem>

#include "platform/portable/clocks.h"
#include "platform/portable/sqlite/sqlite_connection.h"
#include "platform/values/text.h"
#include "tests/common/database_state.h"

namespace pxtarvo::tests {

namespace fs = std::filesystem;

namespace {

/// The files of a folder, each with its bytes.
std::map<std::string, std::string> filesOf(const fs::path& folder, std::string_view prefix = "") {
    std::map<std::string, std::string> files;
    if (!fs::exists(folder)) return files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename();
        if (name.starts_with(prefix)) files[name] = bytesOf(entry.path());
    }
    return files;
}

Rows sorted(Rows rows) {
    std::ranges::sort(rows);
    return rows;
}

/// "1.234,50" as a number.
double shownNumber(std::string text) {
    std::erase_if(text, [](char c) { return c == '.' || c == ';'; });
    std::ranges::replace(text, ',', '.');
    return std::stod(text);
}

}  // namespace

std::optional<int> numberAfter(const std::string& text, const std::string& words) {
    const std::size_t at = text.find(words);
    if (at == text.npos) return std::nullopt;
    return std::atoi(text.c_str() + at + words.size());
}

std::string wide(std::string_view text) {
    std::string bytes;
    for (const char character : text) bytes.append({character, '\0'});
    return bytes;
}

void Rehearsal::makeDealer(const std::string& name) {
    static const std::string made = [&] {
        EXPECT_EQ(run("init made.db --sample"), 0) << errors;
        return bytesOf(path("made.db"));
    }();
    folder.write(name, made);
}

void Rehearsal::copy(const std::string& from, const std::string& to) {
    fs::copy_file(path(from), path(to), fs::copy_options::overwrite_existing);
}

void Rehearsal::change(const std::string& sql, const std::string& database) {
    const portable::SystemClock clock;
    portable::SqliteConnection::open(path(database), clock)->runNative(sql);
}

int Rehearsal::holds(const std::string& command, const List& list) {
    const std::string whole = command + " dealer.db --quiet --now '2012-07-25 10:30:00' ";
    for (const char* left : {"dry", "real", "changes"}) fs::remove_all(path(left));
    copy("dealer.db", "before.db");
    const auto before = filesOf(folder.file(""), "dealer.db");
    const Tables contents = tablesOf(path("before.db"));

    const int status = run(whole + "--dry-run --report dry.html --csv dry");
    EXPECT_TRUE(filesOf(folder.file(""), "dealer.db") == before) << "the rehearsal wrote";
    const std::string said = output;
    const std::string toldErrors = errors;

    EXPECT_EQ(run(whole + "--report real.html --csv real --changes changes"), status) << errors;
    EXPECT_EQ(output, said);
    EXPECT_EQ(errors, toldErrors);
    EXPECT_TRUE(filesOf(path("dry")) == filesOf(path("real"))) << "the rehearsal's tables are others";
    copy("dealer.db", "after.db");
    const ReportPage page(path("real.html"));
    EXPECT_EQ(ReportPage(path("dry.html")).totals(), page.totals());
    expectFigures(page, list, tablesOf(path("after.db")) != contents);

    EXPECT_EQ(run("undo dealer.db changes --dry-run"), 0) << errors;
    EXPECT_TRUE(bytesOf(path("dealer.db")) == bytesOf(path("after.db"))) << "the rehearsed undo wrote";
    EXPECT_EQ(run("undo dealer.db changes"), 0) << errors;
    EXPECT_TRUE(tablesOf(path("dealer.db")) == contents) << "the undo did not bring back the tables";
    return status;
}

void Rehearsal::expectFigures(const ReportPage& page, const List& list, bool changed) {
    Comparison tables(path("before.db"), path("after.db"));
    if (!list.path.empty())
        tables.readList(list.path, list.table, list.pricePosition,
                        numberAfter(output, "Registro ").value_or(INT_MAX) - 1);
    std::map<std::string, std::string> counts;
    const auto totals = page.totals();
    for (const auto& [label, line] : totals) counts[label] = line.at(0);
    EXPECT_EQ(counts, changed ? tables.totals() : decltype(counts)());

    constexpr std::string_view value =
        "SELECT total(Exis_Cantidad * ART_PVE) FROM {}.Exis JOIN {}.Art ON Exis_IdArt = Art_Id";
    const auto bars = page.texts("//section[h2 = 'Valor de las existencias']//*[local-name() = 'text']");
    if (!bars.empty()) {
        const auto at = [&](const std::string& side) { return tables.number(replaced(value, "{}", side)); };
        EXPECT_NEAR(shownNumber(bars.at(1)), at("antes"), 0.0051);
        EXPECT_NEAR(shownNumber(bars.at(3)), at("despues"), 0.0051);
    }

    if (const auto retired = totals.find("Dados de baja"); retired != totals.end()) {
        // "2 con existencias: 3,5 unidades, por valor de 4,20; 1 están en la lista ..."
        const std::string& detail = retired->second.at(1);
        const std::vector<std::string_view> said = split(detail, ' ');
        ASSERT_GE(said.size(), 9u) << detail;
        const std::string stocked = " FROM Bajas WHERE Unidades > 0";
        EXPECT_EQ(shownNumber(std::string(said[0])), tables.number("SELECT count(*)" + stocked));
        EXPECT_NEAR(shownNumber(std::string(said[3])), tables.number("SELECT total(Unidades)" + stocked),
                    0.0001);
        EXPECT_NEAR(shownNumber(std::string(said[8])),
                    tables.number("SELECT total(Unidades * coalesce(Despues, 0))" + stocked), 0.0051);
        EXPECT_EQ(said.size() > 9 ? shownNumber(std::string(said[9])) : 0,
                  tables.number("SELECT count(*) FROM Listados WHERE Precio IS NOT NULL AND Art_Id IN "
                                "(SELECT Art_Id FROM Bajas)"));
    }
    expectTables(page, tables);
}

void Rehearsal::expectTables(const ReportPage& page, const Comparison& tables) {
    const std::map<std::string, std::string> titles{{"precios", "Todos los precios que cambian"},
                                                    {"bajas", "Artículos dados de baja"},
                                                    {"nuevos", "Artículos nuevos"},
                                                    {"borrados", "Artículos borrados"},
                                                    {"existencias", "Existencias que cambian"},
                                                    {"ubicaciones", "Ubicaciones"}};
    for (auto [name, expected] : tables.tables()) {
        SCOPED_TRACE(name);
        for (Row& row : expected) {
            for (std::size_t at = 0; at < row.size(); ++at) {
                // What a spreadsheet would take for a formula; texts stand first.
                const bool text = at == 0 || (name != "existencias" && at == 1);
                if (text && row[at].find_first_of("=+-@\t\r") == 0) row[at].insert(0, 1, '\'');
            }
        }
        const Rows rows = csvRows(path("real/" + name + ".csv"));
        EXPECT_EQ(sorted(rows), sorted(expected));
        Rows shown = page.table(titles.at(name));
        for (std::size_t at = 0; at < std::min(rows.size(), shown.size()); ++at) {
            // The page needs no such apostrophe, and knows no carriage return.
            for (std::size_t cell = 0; cell < shown[at].size(); ++cell) {
                const std::string& text = rows[at].at(cell);
                if (replaced(text, "\r", " ") == shown[at][cell] || text == "'" + shown[at][cell]) {
                    shown[at][cell] = text;
                }
            }
        }
        EXPECT_TRUE(sameTables(shown, rows)) << "the page shows another table";
    }
}

}  // namespace pxtarvo::tests
