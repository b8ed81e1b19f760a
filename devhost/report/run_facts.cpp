#include "devhost/report/run_facts.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include "devhost/changes/changeset.h"
#include "devhost/changes/table_columns.h"
#include "host/tables.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

std::optional<double> price(const ChangedValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.number());
}

/// The positions of the columns of a table that the facts need.
class Columns {
  public:
    Columns(sqlite3* database, const Tabla& table) : columns_(database, table.sNombre) {}
    int operator[](const Columna& column) const { return columns_.position(column.sNombre); }

  private:
    TableColumns columns_;
};

/// An article that the run wrote.
struct ArticleChange {
    std::int64_t id = 0;
    ChangeKind kind = ChangeKind::Updated;
    bool priceChanged = false;
    std::optional<double> before{};
    bool stateChanged = false;
    bool wasActive = false;
    ArticleFact deleted{};  ///< of a deleted one
};

class Gathering {
  public:
    Gathering(sqlite3* database, const ListPrice& listPrice)
        : database_(database),
          listPrice_(listPrice),
          art_(database, Art::tabla),
          exis_(database, Exis::tabla),
          ubi_(database, Ubi::tabla) {}

    RunFacts from(std::string_view changes) {
        forEachChange(changes, [this](const RowChange& row) { take(row); });
        std::ranges::sort(articles_, {}, &ArticleChange::id);
        readStock();
        readArticles();
        finishStock();
        return std::move(facts_);
    }

  private:
    void take(const RowChange& row) {
        facts_.changed = true;
        for (const auto& [table, action] : actions) {
            if (equalIgnoringAsciiCase(table, row.table())) return (this->*action)(row);
        }
    }

    void takeArticle(const RowChange& row) {
        ArticleChange change{.id = row.keyValue(), .kind = row.kind()};
        const ChangedValue priceBefore = row.before(art_[Art::PVE]);
        change.priceChanged = row.kind() == ChangeKind::Updated && priceBefore.known();
        change.before = price(priceBefore);
        const ChangedValue stateBefore = row.before(art_[Art::Estado]);
        change.stateChanged = row.kind() == ChangeKind::Updated && stateBefore.known();
        change.wasActive = stateBefore.whole() == 0 && !stateBefore.isNull();
        if (row.kind() == ChangeKind::Deleted) {
            change.deleted = {.id = change.id,
                              .code = std::string(row.before(art_[Art::Cod]).text()),
                              .description = std::string(row.before(art_[Art::Des]).text()),
                              .before = change.before};
        }
        articles_.push_back(std::move(change));
    }

    void takeStock(const RowChange& row) {
        const ChangedValue before = row.before(exis_[Exis::Cantidad]);
        const ChangedValue after = row.after(exis_[Exis::Cantidad]);
        const int article = exis_[Exis::IdArt];
        StockFact fact{.before = before.number(), .after = after.number()};
        if (row.kind() == ChangeKind::Updated) {
            if (!before.known()) return;
            fact.article = articleOfStock(row.keyValue());
        } else {
            fact.article =
                (row.kind() == ChangeKind::Inserted ? row.after(article) : row.before(article)).whole();
        }
        stockGrown_[fact.article] += fact.after - fact.before;
        facts_.stock.push_back(std::move(fact));
    }

    void takePlace(const RowChange& row) {
        const int text = ubi_[Ubi::Pasillo];
        if (row.kind() == ChangeKind::Updated && !row.before(text).known()) return;
        PlaceFact place{.before = std::string(row.before(text).text()),
                        .after = std::string(row.after(text).text())};
        place.article = row.kind() == ChangeKind::Inserted
                            ? row.after(ubi_[Ubi::IdArt]).whole()
                            : columnOf("SELECT Ubi_IdArt FROM Ubi WHERE Ubi_Id = ?1", row.keyValue());
        facts_.places.push_back(std::move(place));
    }

    void takeSupplierRow(const RowChange& row) {
        if (row.kind() == ChangeKind::Inserted) ++facts_.supplierRowsNew;
        if (row.kind() == ChangeKind::Updated) ++facts_.supplierRowsChanged;
    }
    void takeDiscount(const RowChange& row) { facts_.discountTexts += row.kind() != ChangeKind::Deleted; }
    void takeHistory(const RowChange& row) { facts_.historyRows += row.kind() == ChangeKind::Inserted; }

    std::int64_t articleOfStock(std::int64_t stockRow) {
        return columnOf("SELECT Exis_IdArt FROM Exis WHERE Exis_Id = ?1", stockRow);
    }

    std::int64_t columnOf(const char* query, std::int64_t key) {
        auto& statement = queries_[query];
        if (!statement) statement = portable::prepare(database_, query);
        sqlite3_reset(statement.get());
        sqlite3_bind_int64(statement.get(), 1, key);
        const std::int64_t value =
            portable::step(statement.get()) ? sqlite3_column_int64(statement.get(), 0) : 0;
        sqlite3_reset(statement.get());
        return value;
    }

    /// The units of each article as they are now.
    void readStock() {
        const auto query = portable::prepare(
            database_, "SELECT Exis_IdArt, Exis_Cantidad FROM Exis WHERE Exis_Cantidad <> 0");
        while (portable::step(query.get())) {
            stock_[sqlite3_column_int64(query.get(), 0)] += sqlite3_column_double(query.get(), 1);
        }
    }

    double units(std::int64_t article) const {
        const auto found = stock_.find(article);
        return found == stock_.end() ? 0 : found->second;
    }
    double unitsBefore(std::int64_t article) const {
        const auto grown = stockGrown_.find(article);
        return units(article) - (grown == stockGrown_.end() ? 0 : grown->second);
    }

    /// Walks the articles beside the changes, both by their identifiers.
    void readArticles() {
        const auto query = portable::prepare(
            database_, "SELECT Art_Id, ART_Cod, ART_DES, ART_PVE, Art_Estado FROM Art ORDER BY Art_Id");
        sqlite3_stmt* const row = query.get();
        auto change = articles_.begin();
        const auto passDeleted = [&](std::int64_t until) {
            for (; change != articles_.end() && change->id < until; ++change) takeDeleted(*change);
        };
        while (portable::step(row)) {
            const std::int64_t id = sqlite3_column_int64(row, 0);
            passDeleted(id);
            const bool written = change != articles_.end() && change->id == id;
            takeAfter(row, id, written ? &*change : nullptr);
            if (written) ++change;
        }
        passDeleted(INT64_MAX);
    }

    void takeDeleted(ArticleChange& change) {
        if (change.kind != ChangeKind::Deleted) return;
        change.deleted.stock = unitsBefore(change.id);
        facts_.stockValueBefore += change.deleted.stock * change.before.value_or(0);
        facts_.deleted.push_back(std::move(change.deleted));
    }

    static std::string_view text(sqlite3_stmt* row, int column) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
        return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_column_bytes(row, column)))
                    : std::string_view();
    }

    void takeAfter(sqlite3_stmt* row, std::int64_t id, const ArticleChange* change) {
        const auto after = sqlite3_column_type(row, 3) == SQLITE_NULL
                               ? std::nullopt
                               : std::optional(sqlite3_column_double(row, 3));
        const bool inserted = change && change->kind == ChangeKind::Inserted;
        const auto before = inserted ? std::nullopt : change && change->priceChanged ? change->before : after;
        facts_.stockValueBefore += unitsBefore(id) * before.value_or(0);
        facts_.stockValueAfter += units(id) * after.value_or(0);
        if (listPrice_ && after && !inserted && !(change && change->priceChanged)) {
            const auto listed = listPrice_(text(row, 1));
            if (listed && *after > *listed) ++facts_.keptHigher;
        }
        if (!change) return;
        const auto fact = [&] {
            return ArticleFact{id,       std::string(text(row, 1)), std::string(text(row, 2)), before, after,
                               units(id)};
        };
        if (inserted) {
            facts_.added.push_back(fact());
            return;
        }
        if (change->priceChanged) {
            (before.value_or(0) == 0 ? facts_.firstPriced : facts_.repriced).push_back(fact());
        }
        if (change->stateChanged) {
            const bool active =
                sqlite3_column_int64(row, 4) == 0 && sqlite3_column_type(row, 4) != SQLITE_NULL;
            if (change->wasActive && !active) {
                facts_.retired.push_back(fact());
                facts_.retiredThoughListed += listPrice_ && listPrice_(text(row, 1));
            }
            if (!change->wasActive && active) ++facts_.reactivated;
        }
    }

    /// The codes of the articles whose stock or place was written.
    void finishStock() {
        std::unordered_map<std::int64_t, std::string> codes;
        for (const ArticleFact& deleted : facts_.deleted) codes.emplace(deleted.id, deleted.code);
        const auto query = portable::prepare(database_, "SELECT ART_Cod FROM Art WHERE Art_Id = ?1");
        const auto codeOf = [&](std::int64_t article) {
            const auto [found, fresh] = codes.try_emplace(article);
            if (fresh) {
                sqlite3_reset(query.get());
                sqlite3_bind_int64(query.get(), 1, article);
                if (portable::step(query.get())) found->second = text(query.get(), 0);
            }
            return found->second;
        };
        for (StockFact& fact : facts_.stock) fact.code = codeOf(fact.article);
        for (PlaceFact& fact : facts_.places) fact.code = codeOf(fact.article);
        std::ranges::sort(facts_.stock, {}, &StockFact::article);
        std::ranges::sort(facts_.places, {}, &PlaceFact::article);
    }

    static constexpr std::pair<std::string_view, void (Gathering::*)(const RowChange&)> actions[] = {
        {Art::tabla.sNombre, &Gathering::takeArticle},  {Exis::tabla.sNombre, &Gathering::takeStock},
        {Ubi::tabla.sNombre, &Gathering::takePlace},    {ArtPro::tabla.sNombre, &Gathering::takeSupplierRow},
        {Aat::tabla.sNombre, &Gathering::takeDiscount}, {Hexis::tabla.sNombre, &Gathering::takeHistory},
    };

    sqlite3* database_;
    const ListPrice& listPrice_;
    Columns art_;
    Columns exis_;
    Columns ubi_;
    std::map<std::string_view, portable::StatementHandle> queries_;
    std::vector<ArticleChange> articles_;
    std::unordered_map<std::int64_t, double> stock_;       ///< units by article, now
    std::unordered_map<std::int64_t, double> stockGrown_;  ///< in the run
    RunFacts facts_;
};

}  // namespace

RunFacts gatherFacts(portable::SqliteConnection& connection, std::string_view changes,
                     const ListPrice& listPrice) {
    return Gathering(connection.handle(), listPrice).from(changes);
}

}  // namespace pxtarvo::devhost
