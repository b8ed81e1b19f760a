#include "devhost/changes/table_comparison.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <numeric>
#include <optional>
#include <vector>

#include "devhost/changes/changeset_writer.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// Keys of a table that are not worth a second thread.
constexpr std::int64_t fewKeys = 500;

/// What one thread compares at a time.
struct Part {
    const Tabla* table;
    std::shared_ptr<const TableColumns> columns;
    std::size_t half;
    std::int64_t firstKey;
    std::int64_t lastKey;
};

/// The parts of the tables that have rows, before or after.
std::vector<Part> partsOf(sqlite3* connection) {
    std::vector<Part> parts;
    for (const Tabla& table : tablasHost) {
        const auto columns = std::make_shared<const TableColumns>(connection, table.sNombre);
        if (!columns->exists()) continue;
        // Each sought by itself is found at once, together they would take a walk over the table.
        const auto sought = [&](std::string_view which, std::string_view schema) {
            return joined({"(SELECT ", which, "(_rowid_) AS key FROM ", schema, ".", table.sNombre, ")"});
        };
        const auto ofBoth = [&](std::string_view which) {
            return joined({"(SELECT ", which, "(key) FROM (SELECT key FROM ", sought(which, "main"),
                           " UNION ALL SELECT key FROM ", sought(which, BeforeAndAfter::beforeSchema), "))"});
        };
        const auto query =
            portable::prepare(connection, joined({"SELECT ", ofBoth("min"), ", ", ofBoth("max")}));
        portable::step(query.get());
        if (sqlite3_column_type(query.get(), 0) == SQLITE_NULL) continue;
        const std::int64_t least = sqlite3_column_int64(query.get(), 0);
        const std::int64_t most = sqlite3_column_int64(query.get(), 1);
        const std::int64_t middle = std::midpoint(least, most);
        if (most - middle < fewKeys) {
            parts.push_back({&table, columns, 0, least, most});
        } else {
            parts.push_back({&table, columns, 0, least, middle});
            parts.push_back({&table, columns, 1, middle + 1, most});
        }
    }
    return parts;
}

class Comparing {
  public:
    Comparing(const BeforeAndAfter& states, bool wantsChangeset, const VisitorOf& visitorOf)
        : states_(states), wantsChangeset_(wantsChangeset), visitorOf_(visitorOf) {}

    RunChanges work() {
        const portable::DatabaseHandle connection = states_.open();
        parts_ = partsOf(connection.get());
        changesets_.resize(parts_.size());
        const bool worthIt = std::ranges::any_of(parts_, [](const Part& part) { return part.half > 0; });
        std::future<void> other;
        if (worthIt) {
            other = std::async(std::launch::async, [this] {
                const portable::DatabaseHandle own = states_.open();
                takeParts(own.get());
            });
        }
        takeParts(connection.get());
        if (worthIt) other.get();
        return result();
    }

  private:
    /// Until none is left.
    void takeParts(sqlite3* connection) {
        for (std::size_t at = next_++; at < parts_.size(); at = next_++)
            changesets_[at] = compare(connection, parts_[at]);
    }

    RunChanges result() {
        RunChanges changes{.any = any_, .changeset = {}};
        for (std::string& changeset : changesets_) {
            changes.changeset.empty() ? changes.changeset.swap(changeset)
                                      : void(changes.changeset += changeset);
        }
        return changes;
    }

    /// The next row's key; nothing past the last row.
    static std::optional<std::int64_t> next(sqlite3_stmt* rows, int key) {
        if (!portable::step(rows)) return std::nullopt;
        return sqlite3_column_int64(rows, key);
    }

    std::string compare(sqlite3* connection, const Part& part) {
        const std::string_view table = part.table->sNombre;
        const int key = part.columns->key();
        const int count = static_cast<int>(part.columns->names().size());
        const auto rows = [&](std::string_view schema) {
            auto query =
                portable::prepare(connection, joined({"SELECT * FROM ", schema, ".", table,
                                                      " WHERE _rowid_ BETWEEN ?1 AND ?2 ORDER BY _rowid_"}));
            sqlite3_bind_int64(query.get(), 1, part.firstKey);
            sqlite3_bind_int64(query.get(), 2, part.lastKey);
            return query;
        };
        const auto before = rows(BeforeAndAfter::beforeSchema);
        const auto after = rows("main");
        const RowVisitor visitor =
            visitorOf_ ? visitorOf_({*part.table, *part.columns, part.half}) : RowVisitor();
        ChangesetWriter writer(table, key);
        RowPair pair(before.get(), after.get(), count);
        bool any = false;
        auto keyBefore = next(before.get(), key);
        auto keyAfter = next(after.get(), key);
        while (keyBefore || keyAfter) {
            const bool takesBefore = keyBefore && (!keyAfter || *keyBefore <= *keyAfter);
            const bool takesAfter = keyAfter && (!keyBefore || *keyAfter <= *keyBefore);
            pair.take(takesBefore, takesAfter);
            any = any || pair.change() != RowChange::None;
            if (wantsChangeset_) writer.row(pair);
            if (visitor) visitor(pair);
            if (takesBefore) keyBefore = next(before.get(), key);
            if (takesAfter) keyAfter = next(after.get(), key);
        }
        if (any) any_ = true;
        return writer.take();
    }

    const BeforeAndAfter& states_;
    bool wantsChangeset_;
    const VisitorOf& visitorOf_;
    std::vector<Part> parts_;
    std::vector<std::string> changesets_;  ///< of the parts
    std::atomic<std::size_t> next_ = 0;
    std::atomic<bool> any_ = false;
};

}  // namespace

RunChanges compareTables(const BeforeAndAfter& states, bool wantsChangeset, const VisitorOf& visitorOf) {
    return Comparing(states, wantsChangeset, visitorOf).work();
}

}  // namespace pxtarvo::devhost
