#include "devhost/changes/table_comparison.h"

#include <array>
#include <atomic>
#include <future>
#include <iterator>
#include <optional>

#include "devhost/changes/changeset_writer.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::size_t parts = std::size(tablasHost) * 2;

class Comparing {
  public:
    Comparing(const BeforeAndAfter& states, bool wantsChangeset, const VisitorOf& visitorOf)
        : states_(states), wantsChangeset_(wantsChangeset), visitorOf_(visitorOf) {}

    /// Takes parts until none is left.
    void work() {
        const portable::DatabaseHandle connection = states_.open();
        for (std::size_t at = next_++; at < parts; at = next_++) {
            changesets_[at] = compare(connection.get(), tablasHost[at / 2], at % 2);
        }
    }

    RunChanges result() {
        RunChanges changes{.any = any_, .changeset = {}};
        for (std::string& changeset : changesets_) {
            changes.changeset.empty() ? changes.changeset.swap(changeset)
                                      : void(changes.changeset += changeset);
        }
        return changes;
    }

  private:
    /// The next row's key; nothing past the last row.
    static std::optional<std::int64_t> next(sqlite3_stmt* rows, int key) {
        if (!portable::step(rows)) return std::nullopt;
        return sqlite3_column_int64(rows, key);
    }

    std::string compare(sqlite3* connection, const Tabla& table, std::size_t half) {
        const TableColumns columns(connection, table.sNombre);
        if (!columns.exists()) return {};
        const int key = columns.key();
        const int count = static_cast<int>(columns.names().size());
        const std::string keyName = joined({"\"", columns.names().at(static_cast<std::size_t>(key)), "\""});
        const auto middle = portable::prepare(
            connection,
            joined({"SELECT (min(", keyName, ") + max(", keyName, ")) / 2 FROM main.", table.sNombre}));
        portable::step(middle.get());
        const auto rows = [&](std::string_view schema) {
            auto query = portable::prepare(
                connection, joined({"SELECT * FROM ", schema, ".", table.sNombre, " WHERE ", keyName,
                                    half == 0 ? " <= ?1" : " > ?1", " ORDER BY ", keyName}));
            sqlite3_bind_int64(query.get(), 1, sqlite3_column_int64(middle.get(), 0));
            return query;
        };
        const auto before = rows(BeforeAndAfter::beforeSchema);
        const auto after = rows("main");
        const RowVisitor visitor = visitorOf_ ? visitorOf_({table, columns, half}) : RowVisitor();
        ChangesetWriter writer(table.sNombre, count, key);
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
    std::atomic<std::size_t> next_ = 0;
    std::atomic<bool> any_ = false;
    std::array<std::string, parts> changesets_;
};

}  // namespace

RunChanges compareTables(const BeforeAndAfter& states, bool wantsChangeset, const VisitorOf& visitorOf) {
    Comparing comparing(states, wantsChangeset, visitorOf);
    auto other = std::async(std::launch::async, [&] { comparing.work(); });
    comparing.work();
    other.get();
    return comparing.result();
}

}  // namespace pxtarvo::devhost
