#include "devhost/dealer/list_articles.h"

#include <set>

#include "platform/portable/access/jet_connection.h"
#include "platform/values/conversion.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::size_t listed = 640;
constexpr int rowStep = 3;

// Columns of the list, by position.
constexpr std::int32_t codeColumn = 1;
constexpr std::int32_t priceColumn = 3;
constexpr std::int32_t descriptionColumn = 9;

}  // namespace

std::vector<ListArticle> listArticles() {
    const Locale& locale = spanishLocale();
    const auto list = makeObject<portable::JetConnection>(portable::DrivePaths());
    list->ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"" PXTARVO_SAMPLE_LIST "\"");
    list->Open("", "", adOptionUnspecified);
    const auto rows = list->openRows("SELECT * FROM List");
    const auto text = [&](std::int32_t column) {
        return joinedText(trimmed(rows->value(column), locale), locale);
    };
    std::vector<ListArticle> articles;
    std::set<std::string> codes;
    for (int row = 0; articles.size() < listed && rows->next(); ++row) {
        if (row % rowStep != 0 || !codes.insert(text(codeColumn)).second) continue;
        articles.push_back(
            {text(codeColumn), text(descriptionColumn), toDouble(rows->value(priceColumn), locale)});
    }
    return articles;
}

}  // namespace pxtarvo::devhost
