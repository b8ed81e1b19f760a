// The report's page and files where the dealer's texts and the list's are hostile.

#include <algorithm>
#include <filesystem>

#include "platform/values/text.h"
#include "tests/rehearsal/rehearsal.h"

namespace pxtarvo::tests {

namespace {

using ::testing::Contains;
using ::testing::IsSubsetOf;

constexpr const char* hostileTexts[] = {"<script>alert(1)</script>",
                                        "\"&'",
                                        "</td></table><img src=x onerror=alert(1)>",
                                        "&lt;b&gt;&amp;",
                                        "<!--",
                                        "]]><svg onload=alert(1)>",
                                        "=1+1",
                                        "+1",
                                        "-1",
                                        "@SUM(A1)",
                                        "\t=1",
                                        "a;\"b\"\r\nc",
                                        "ÑANDÚ €",
                                        "'\"; DROP TABLE Art; --"};

class HostilePage : public Rehearsal {
  protected:
    /// Gives articles of all kinds these texts for codes and descriptions.
    void makeHostileDealer() {
        makeDealer();
        std::string sql;
        int article = 0;
        for (const char* text : hostileTexts) {
            const std::string quoted = "'" + replaced(text, "'", "''") + "'";
            // Articles of the brand without movements, some with stock, one in two retired.
            // An apostrophe in a code stops the deletion.
            sql += "UPDATE Art SET ART_Cod = replace(" + quoted + ", char(39), '`'), ART_DES = " + quoted +
                   ", Art_Estado = " + std::to_string(article % 2) +
                   ", Art_FechaEstado = '2005-01-01 00:00:00' WHERE Art_Id = " +
                   "(SELECT Art_Id FROM Art WHERE Art_Marca = 1 AND Art_Id % 4 = 0 ORDER BY Art_Id LIMIT 1 "
                   "OFFSET " +
                   std::to_string(article) + ");";
            ++article;
        }
        sql +=
            "UPDATE Pro SET Pro_NOM = '<script>alert(2)</script>';"
            "UPDATE Marcas SET Marca_Des = '</dd><script>alert(3)</script>';";
        change(sql);
    }

    /// No element or attribute but those of a page without such texts, and every text as it is.
    void expectHarmless(const ReportPage& page, const std::set<std::string>& known) {
        EXPECT_THAT(page.names(), IsSubsetOf(known));
        EXPECT_EQ(page.texts("//*[local-name() = 'script' or local-name() = 'img']").size(), 0u);
    }
};

TEST_F(HostilePage, ShowsTheTextsOfDealerAndListAsTexts) {
    std::set<std::string> known{"class=veredicto mal"};
    for (const bool hostile : {false, true}) {
        const std::pair<std::string, List> runs[] = {
            {"import --year 2009 --file {S}/TARIFA2009.MDB", {sample("TARIFA2009.MDB")}},
            {"fix-codes", {}},
            {"locations --file {S}/articulo.tdw", {}},
            {"delete --brand SAME --until 31/12/2008", {}}};
        for (const auto& [command, list] : runs) {
            SCOPED_TRACE(command);
            hostile ? makeHostileDealer() : makeDealer();
            if (hostile) {
                EXPECT_EQ(holds(command, list), 0) << errors;
            } else {
                ASSERT_EQ(run(command + " dealer.db --report real.html"), 0) << errors;
            }
            const ReportPage page(path("real.html"));
            if (hostile) {
                expectHarmless(page, known);
            } else {
                known.merge(page.names());
            }
            if (hostile && command.starts_with("delete")) {
                const Rows deleted = page.table("Artículos borrados");
                for (const std::string_view text : hostileTexts) {
                    const std::string shown = replaced(text, "\r", " ");
                    EXPECT_TRUE(std::ranges::any_of(deleted, [&](const Row& row) {
                        return row.at(0) == replaced(shown, "'", "`") && row.at(1) == shown;
                    })) << text;
                }
            }
        }
    }

    // What stands in the list and in the names of the files.
    std::string list = bytesOf(sample("list-apostrophe-row-57.mdb"));
    const auto wide = [](std::string_view text) {
        std::string bytes;
        for (const char character : text) bytes.append({character, '\0'});
        return bytes;
    };
    list = replaced(list, wide("7O'RING"), wide("<b>'&\"<"));
    folder.write("<i>&\"'.mdb", list);
    std::filesystem::rename(path("dealer.db"), path("<u>&\".db"));
    EXPECT_EQ(run(R"(import '<u>&".db' --file '<i>&"'"'"'.mdb' --report real.html --csv real)"), 1);
    const ReportPage page(path("real.html"));
    expectHarmless(page, known);
    const Rows faults = page.table("Faltas de la lista");
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults.at(0).at(0), "57");
    EXPECT_EQ(faults.at(0).at(1), "<b>'&\"<");
    EXPECT_THAT(page.texts("//dd"), Contains("<i>&\"'.mdb"));
}

}  // namespace

}  // namespace pxtarvo::tests
