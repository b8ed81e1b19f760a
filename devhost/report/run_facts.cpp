#include "devhost/report/run_facts.h"

#include <algorithm>
#include <iterator>

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
        if (portable::step(query.get())) fact.code = RowValue(sqlite3_column_value(query.get(), 0)).text();
    }
}

template <class Fact>
void append(std::vector<Fact>& facts, std::vector<Fact>& others) {
    std::ranges::move(others, std::back_inserter(facts));
}

void append(RunFacts& facts, RunFacts& others) {
    for (const auto list : {&RunFacts::repriced, &RunFacts::firstPriced, &RunFacts::added, &RunFacts::retired,
                            &RunFacts::deleted}) {
        append(facts.*list, others.*list);
    }
    append(facts.stock, others.stock);
    append(facts.places, others.places);
    for (const auto count : {&RunFacts::retiredThoughListed, &RunFacts::reactivated, &RunFacts::keptHigher,
                             &RunFacts::supplierRowsNew, &RunFacts::supplierRowsChanged,
                             &RunFacts::discountTexts, &RunFacts::historyRows}) {
        facts.*count += others.*count;
    }
}

}  // namespace

RowVisitor FactGathering::visitor(const TablePart& part) {
    Half& half = halves_[part.half];
    RunFacts& facts = half.facts;
    const std::string_view name = part.table.sNombre;
    if (name == Art::tabla.sNombre) return articles(half, part.columns, listPrice_);
    if (name == Exis::tabla.sNombre) return stock(half, part.columns);
    if (name == Ubi::tabla.sNombre) return places(half, part.columns);
    if (name == ArtPro::tabla.sNombre) {
        return [&facts](const RowPair& row) {
            facts.supplierRowsNew += row.change() == RowChange::Inserted;
            facts.supplierRowsChanged += row.change() == RowChange::Updated;
        };
    }
    if (name == Aat::tabla.sNombre) {
        return [&facts](const RowPair& row) {
            facts.discountTexts += row.change() == RowChange::Inserted || row.change() == RowChange::Updated;
        };
    }
    if (name == Hexis::tabla.sNombre) {
        return [&facts](const RowPair& row) { facts.historyRows += row.change() == RowChange::Inserted; };
    }
    return {};
}

RowVisitor FactGathering::articles(Half& half, const TableColumns& columns, ListPrice listPrice) {
    const auto at = [&](const Columna& column) { return columns.position(column.sNombre); };
    return [&facts = half.facts, &prices = half.prices, listPrice = std::move(listPrice), id = at(Art::Id),
            code = at(Art::Cod), description = at(Art::Des), price = at(Art::PVE),
            state = at(Art::Estado)](const RowPair& row) {
        const RowChange change = row.change();
        const auto before = priceOf(row.before(price));
        const auto after = priceOf(row.after(price));
        const bool deleted = change == RowChange::Deleted;
        const auto value = [&](int column) { return deleted ? row.before(column) : row.after(column); };
        if (before || after) prices.push_back({value(id).whole(), before.value_or(0), after.value_or(0)});

        const bool repriced = change == RowChange::Updated && row.changed(price);
        const bool keptPrice = change == RowChange::None || (change == RowChange::Updated && !repriced);
        if (listPrice && keptPrice && after) {
            const auto listed = listPrice(value(code).text());
            if (listed && *after > *listed) ++facts.keptHigher;
        }
        if (change == RowChange::None) return;
        const auto fact = [&] {
            return ArticleFact{.id = value(id).whole(),
                               .code = std::string(value(code).text()),
                               .description = std::string(value(description).text()),
                               .before = before,
                               .after = after};
        };
        if (deleted) facts.deleted.push_back(fact());
        if (change == RowChange::Inserted) facts.added.push_back(fact());
        if (repriced) (before.value_or(0) == 0 ? facts.firstPriced : facts.repriced).push_back(fact());
        if (change == RowChange::Updated) {
            const bool wasActive = isActive(row.before(state));
            const bool active = isActive(row.after(state));
            if (wasActive && !active) {
                facts.retired.push_back(fact());
                facts.retiredThoughListed += listPrice && listPrice(value(code).text());
            }
            if (!wasActive && active) ++facts.reactivated;
        }
    };
}

RowVisitor FactGathering::stock(Half& half, const TableColumns& columns) {
    return [&stock = half.stock, &facts = half.facts, article = columns.position(Exis::IdArt.sNombre),
            units = columns.position(Exis::Cantidad.sNombre)](const RowPair& row) {
        const RowValue before = row.before(units);
        const RowValue after = row.after(units);
        if (before.number() != 0) stock[row.before(article).whole()].before += before.number();
        if (after.number() != 0) stock[row.after(article).whole()].after += after.number();
        if (row.change() == RowChange::None) return;
        if (row.change() == RowChange::Updated && !row.changed(units)) return;
        const bool deleted = row.change() == RowChange::Deleted;
        facts.stock.push_back({.article = (deleted ? row.before(article) : row.after(article)).whole(),
                               .code = {},
                               .before = before.number(),
                               .after = after.number()});
    };
}

RowVisitor FactGathering::places(Half& half, const TableColumns& columns) {
    return [&facts = half.facts, article = columns.position(Ubi::IdArt.sNombre),
            place = columns.position(Ubi::Pasillo.sNombre)](const RowPair& row) {
        if (row.change() == RowChange::None) return;
        if (row.change() == RowChange::Updated && !row.changed(place)) return;
        const bool deleted = row.change() == RowChange::Deleted;
        facts.places.push_back({.article = (deleted ? row.before(article) : row.after(article)).whole(),
                                .code = {},
                                .before = std::string(row.before(place).text()),
                                .after = std::string(row.after(place).text())});
    };
}

FactGathering::Units FactGathering::unitsOf(std::int64_t article) const {
    Units units;
    for (const Half& half : halves_) {
        const auto found = half.stock.find(article);
        if (found == half.stock.end()) continue;
        units.before += found->second.before;
        units.after += found->second.after;
    }
    return units;
}

RunFacts FactGathering::finish(const BeforeAndAfter& states) {
    RunFacts& facts = halves_.front().facts;
    append(facts, halves_.back().facts);
    for (const Half& half : halves_) {
        for (const Prices& prices : half.prices) {
            const Units units = unitsOf(prices.article);
            facts.stockValueBefore += units.before * prices.before;
            facts.stockValueAfter += units.after * prices.after;
        }
    }
    for (const auto list :
         {&RunFacts::repriced, &RunFacts::firstPriced, &RunFacts::added, &RunFacts::retired}) {
        for (ArticleFact& fact : facts.*list) fact.stock = unitsOf(fact.id).after;
    }
    for (ArticleFact& fact : facts.deleted) fact.stock = unitsOf(fact.id).before;
    if (facts.stock.empty() && facts.places.empty()) return std::move(facts);
    const portable::DatabaseHandle connection = states.open();
    nameArticles(facts.stock, connection.get());
    nameArticles(facts.places, connection.get());
    return std::move(facts);
}

}  // namespace pxtarvo::devhost
