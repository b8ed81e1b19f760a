// Whole sample lists of each year imported into the sample dealer's database, against a plain model of what
// an import leaves behind.

#include <gmock/gmock.h>

#include <map>
#include <set>

#include "platform/portable/access/jet_connection.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"
#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

struct YearlySample {
    const char* year;
    const char* file;
    bool keepsHigherPrice;
    bool reactivates;
    bool listDate;
    const char* brandColumn;
};

void PrintTo(const YearlySample& sample, std::ostream* out) {
    *out << sample.year << " " << sample.file;
}

class YearlySamples : public Scene, public ::testing::WithParamInterface<YearlySample> {};

struct Article {
    std::string price;
    std::string listPrice;
    std::string state;
    std::string brand;
    std::string discount;
    std::string date;
    std::string description;  ///< the supplier's
    bool operator==(const Article&) const = default;
};

void PrintTo(const Article& a, std::ostream* out) {
    *out << a.price << "/" << a.listPrice << "/" << a.state << "/" << a.brand << "/" << a.discount << "/"
         << a.date << "/" << a.description;
}

constexpr const char* dayOfRun = "25/07/2012";

std::string lowerAscii(std::string text) {
    for (char& character : text) {
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    }
    return text;
}

const std::map<std::string, std::string> discountTexts = [] {
    std::map<std::string, std::string> texts;
    for (const char* group : {"C", "A", "11", "74", "84"}) {
        texts[group] = "TD 15 - UR 24 - UN 32 - ST 37 - CP Neto - WR 35";
    }
    for (const char* group : {"M", "12", "64", "89"}) {
        texts[group] = "TD 15 - UR 35 - UN 40 - ST 50 - CP Neto - WR 35";
    }
    return texts;
}();

TEST_P(YearlySamples, LeaveWhatTheModelSays) {
    const YearlySample& year = GetParam();
    createSampleDealer();
    if (!year.keepsHigherPrice) sql("UPDATE Art SET ART_PVE = 1 WHERE ART_PVE IS NULL");

    const auto read = [&] {
        std::map<std::string, Article> articles;
        const auto rows = host().connection()->Execute(
            "SELECT Art_Cod,ART_PVE,Arp_Precio,Art_Estado," + std::string(year.brandColumn) +
                ",Aat_C01,Art_FechaEstado,ARP_des FROM Art LEFT JOIN ArtPro ON ARP_Ida = Art_Id "
                "AND ARP_Idp = 4 LEFT JOIN Aat ON Aat_Id = Art_Id",
            -1);
        const auto text = [&](int position) {
            const Variant cell = rows->Fields(position);
            return cell.isNull() ? "NULL" : joinedText(cell, spanishLocale());
        };
        for (; !rows->Eof(); rows->MoveNext()) {
            articles[lowerAscii(text(0))] = {
                text(1), text(2), text(3), text(4), text(5), text(6).substr(0, 10), text(7)};
        }
        return articles;
    };
    std::map<std::string, Article> expected = read();
    const std::size_t before = expected.size();

    for (auto& [code, article] : expected) {
        if (article.state == "0" && article.brand == "1") {
            article.state = "1";
            article.date = dayOfRun;
        }
    }
    std::string discount;
    std::size_t listed = 0;
    portable::JetConnection list{portable::DrivePaths("")};
    list.ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + sample(year.file) +
                          ";Persist Security Info=False");
    list.Open("", "", -1);
    for (const auto rows = list.openRows("SELECT * FROM List"); rows->next(); ++listed) {
        const auto text = [&](int position) {
            return std::string(trimBlanks(joinedText(rows->value(position), spanishLocale())));
        };
        const std::string price = joinedText(toDouble(rows->value(3), spanishLocale()), spanishLocale());
        const bool isNew = !expected.contains(lowerAscii(text(1)));
        Article& article = expected[lowerAscii(text(1))];
        const bool kept = year.keepsHigherPrice && !isNew && article.price != "NULL" &&
                          toDouble(article.price, spanishLocale()) > toDouble(price, spanishLocale());
        if (!kept) article.price = price;
        article.listPrice = price;
        article.date = year.listDate ? dayMonthYear(rows->value(4), spanishLocale()) : dayOfRun;
        article.description = rows->value(9).isNull() ? "NULL" : text(9);
        if (isNew || year.reactivates) article.state = "0";
        if (isNew || year.brandColumn == std::string_view("Art_Marca")) article.brand = "1";
        if (const auto found = discountTexts.find(text(5)); found != discountTexts.end())
            discount = found->second;
        article.discount = discount;
    }
    ASSERT_GT(listed, 5u);

    import({.year = year.year, .file = sample(year.file)});

    EXPECT_EQ(messageTexts().back(), "Proceso finalizado con exito");
    EXPECT_EQ(read(), expected);
    EXPECT_GT(expected.size(), before);
    EXPECT_EQ(recordOf("commit").size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Years, YearlySamples,
    ::testing::Values(YearlySample{"2007", "TARIFA2007.MDB", false, false, true, "Art_Mar"},
                      YearlySample{"2008", "TARIFA2008.MDB", true, true, true, "Art_Mar"},
                      YearlySample{"2009", "TARIFA2009.MDB", true, true, false, "Art_Marca"},
                      YearlySample{"2012", "TARIFA2012.MDB", true, true, false, "Art_Marca"},
                      // Columns of other types.
                      YearlySample{"2008", "list-text-price.mdb", true, true, true, "Art_Mar"},
                      YearlySample{"2012", "list-decimal-price.mdb", true, true, false, "Art_Marca"},
                      YearlySample{"2012", "list-whole-price.mdb", true, true, false, "Art_Marca"},
                      YearlySample{"2012", "list-numeric-code.mdb", true, true, false, "Art_Marca"},
                      YearlySample{"2012", "list-numeric-group.mdb", true, true, false, "Art_Marca"}));

using NullsAndEmptyTexts = Scene;

TEST_F(NullsAndEmptyTexts, ArriveAsTheyAre) {
    createEmptyDealer();
    import({.file = sample("list-nulls-and-empty-texts.mdb")});
    EXPECT_EQ(value("SELECT count(*) FROM Aat WHERE Aat_C01 = '' AND Aat_Id < 3"), "2");
    EXPECT_THAT(rows("SELECT TOP 4 Art_Cod FROM Art WHERE Art_PVE >= 24 ORDER BY Art_Id"),
                ::testing::ElementsAre("N24", "NULL", "", "N27"));
}

}  // namespace

}  // namespace pxtarvo::test
