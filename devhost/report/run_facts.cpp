#include "devhost/report/run_facts.h"

#include <algorithm>

#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

std::optional<double> priceOf(const RowValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.number());
}

bool isActive(const RowValue& state) {
    return !state.isNull() && state.whole() == 0;
}

/// Tells the facts about an article's rows its code, whether it is still there or not.
template <class Fact>
void nameArticles(std::vector<Fact>& facts, sqlite3* connection) {
    std::ranges::stable_sort(facts, {}, &Fact::article);
    const auto codeIn = [](std::string_view schema) {
        return joined({"SELECT ", Art::Cod.sNombre, " FROM ", schema, ".", Art::tabla.sNombre, " WHERE ",
                       Art::Id.sNombre, " = ?1"});
    };
    const auto query = portable::prepare(
        connection, joined({codeIn("main"), " UNION ALL ", codeIn(BeforeAndAfter::beforeSchema)}));
    for (Fact& fact : facts) {
        sqlite3_reset(query.get());
        sqlite3_bind_int64(query.get(), 1, fact.article);
        if (portable::step(query.get())) fact.code = RowValue(query.get(), 0).text();
    }
}

}  // namespace

RowVisitor FactGathering::visitor(const Tabla& table, const TableColumns& columns) {
    const std::string_view name = table.sNombre;
    if (name == Art::tabla.sNombre) return articles(columns);
    if (name == Exis::tabla.sNombre) return stock(columns);
    if (name == Ubi::tabla.sNombre) return places(columns);
    if (name == ArtPro::tabla.sNombre) {
        return [this](const RowPair& row) {
            facts_.supplierRowsNew += row.change() == RowChange::Inserted;
            facts_.supplierRowsChanged += row.change() == RowChange::Updated;
        };
    }
    if (name == Aat::tabla.sNombre) {
        return [this](const RowPair& row) {
            facts_.discountTexts += row.change() == RowChange::Inserted || row.change() == RowChange::Updated;
        };
    }
    if (name == Hexis::tabla.sNombre) {
        return [this](const RowPair& row) { facts_.historyRows += row.change() == RowChange::Inserted; };
    }
    return {};
}

RowVisitor FactGathering::articles(const TableColumns& columns) {
    const auto at = [&](const Columna& column) { return columns.position(column.sNombre); };
    return [this, id = at(Art::Id), code = at(Art::Cod), description = at(Art::Des), price = at(Art::PVE),
            state = at(Art::Estado)](const RowPair& row) {
        const RowChange change = row.change();
        const auto before = priceOf(row.before(price));
        const auto after = priceOf(row.after(price));
        const bool deleted = change == RowChange::Deleted;
        const auto value = [&](int column) { return deleted ? row.before(column) : row.after(column); };
        if (before || after) prices_.push_back({value(id).whole(), before.value_or(0), after.value_or(0)});

        const bool repriced = change == RowChange::Updated && row.changed(price);
        const bool keptPrice = change == RowChange::None || (change == RowChange::Updated && !repriced);
        if (listPrice_ && keptPrice && after) {
            const auto listed = listPrice_(value(code).text());
            if (listed && *after > *listed) ++facts_.keptHigher;
        }
        if (change == RowChange::None) return;
        const auto fact = [&] {
            return ArticleFact{.id = value(id).whole(),
                               .code = std::string(value(code).text()),
                               .description = std::string(value(description).text()),
                               .before = before,
                               .after = after};
        };
        if (deleted) facts_.deleted.push_back(fact());
        if (change == RowChange::Inserted) facts_.added.push_back(fact());
        if (repriced) (before.value_or(0) == 0 ? facts_.firstPriced : facts_.repriced).push_back(fact());
        if (change == RowChange::Updated) {
            const bool wasActive = isActive(row.before(state));
            const bool active = isActive(row.after(state));
            if (wasActive && !active) {
                facts_.retired.push_back(fact());
                facts_.retiredThoughListed += listPrice_ && listPrice_(value(code).text());
            }
            if (!wasActive && active) ++facts_.reactivated;
        }
    };
}

RowVisitor FactGathering::stock(const TableColumns& columns) {
    return [this, article = columns.position(Exis::IdArt.sNombre),
            units = columns.position(Exis::Cantidad.sNombre)](const RowPair& row) {
        const RowValue before = row.before(units);
        const RowValue after = row.after(units);
        if (before.number() != 0) stock_[row.before(article).whole()].before += before.number();
        if (after.number() != 0) stock_[row.after(article).whole()].after += after.number();
        if (row.change() == RowChange::None) return;
        if (row.change() == RowChange::Updated && !row.changed(units)) return;
        const bool deleted = row.change() == RowChange::Deleted;
        facts_.stock.push_back({.article = (deleted ? row.before(article) : row.after(article)).whole(),
                                .code = {},
                                .before = before.number(),
                                .after = after.number()});
    };
}

RowVisitor FactGathering::places(const TableColumns& columns) {
    return [this, article = columns.position(Ubi::IdArt.sNombre),
            place = columns.position(Ubi::Pasillo.sNombre)](const RowPair& row) {
        if (row.change() == RowChange::None) return;
        if (row.change() == RowChange::Updated && !row.changed(place)) return;
        const bool deleted = row.change() == RowChange::Deleted;
        facts_.places.push_back({.article = (deleted ? row.before(article) : row.after(article)).whole(),
                                 .code = {},
                                 .before = std::string(row.before(place).text()),
                                 .after = std::string(row.after(place).text())});
    };
}

FactGathering::Units FactGathering::unitsOf(std::int64_t article) const {
    const auto found = stock_.find(article);
    return found == stock_.end() ? Units() : found->second;
}

RunFacts FactGathering::finish(const BeforeAndAfter& states) {
    for (const Prices& prices : prices_) {
        const Units units = unitsOf(prices.article);
        facts_.stockValueBefore += units.before * prices.before;
        facts_.stockValueAfter += units.after * prices.after;
    }
    for (auto* articles : {&facts_.repriced, &facts_.firstPriced, &facts_.added, &facts_.retired}) {
        for (ArticleFact& fact : *articles) fact.stock = unitsOf(fact.id).after;
    }
    for (ArticleFact& fact : facts_.deleted) fact.stock = unitsOf(fact.id).before;
    const portable::DatabaseHandle connection = states.open();
    nameArticles(facts_.stock, connection.get());
    nameArticles(facts_.places, connection.get());
    return std::move(facts_);
}

}  // namespace pxtarvo::devhost
