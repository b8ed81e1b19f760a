#include "devhost/changes/table_comparison.h"

#include <array>
#include <atomic>
#include <future>
#include <iterator>

#include "devhost/changes/changeset_writer.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

class Comparing {
  public:
    Comparing(const BeforeAndAfter& states, bool wantsChangeset, const VisitorOf& visitorOf)
        : states_(states), wantsChangeset_(wantsChangeset), visitorOf_(visitorOf) {}

    /// Takes tables until none is left.
    void work() {
        const portable::DatabaseHandle connection = states_.open();
        for (std::size_t at = next_++; at < std::size(tablasHost); at = next_++) {
            changesets_[at] = compare(connection.get(), tablasHost[at]);
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
    std::string compare(sqlite3* connection, const Tabla& table) {
        const TableColumns columns(connection, table.sNombre);
        if (!columns.exists()) return {};
        const int key = columns.key();
        const int count = static_cast<int>(columns.names().size());
        const auto rows = [&](std::string_view schema) {
            return portable::prepare(connection,
                                     joined({"SELECT * FROM ", schema, ".", table.sNombre, " ORDER BY \"",
                                             columns.names().at(static_cast<std::size_t>(key)), "\""}));
        };
        const auto before = rows(BeforeAndAfter::beforeSchema);
        const auto after = rows("main");
        const RowVisitor visitor = visitorOf_ ? visitorOf_(table, columns) : RowVisitor();
        ChangesetWriter writer(table.sNombre, count, key);
        RowPair pair(before.get(), after.get(), count);
        bool hasBefore = portable::step(before.get());
        bool hasAfter = portable::step(after.get());
        bool any = false;
        const auto keyOf = [&](const portable::StatementHandle& row) {
            return sqlite3_column_int64(row.get(), key);
        };
        while (hasBefore || hasAfter) {
            const bool takesBefore = hasBefore && (!hasAfter || keyOf(before) <= keyOf(after));
            const bool takesAfter = hasAfter && (!hasBefore || keyOf(after) <= keyOf(before));
            pair.take(takesBefore, takesAfter);
            any = any || pair.change() != RowChange::None;
            if (wantsChangeset_) writer.row(pair);
            if (visitor) visitor(pair);
            if (takesBefore) hasBefore = portable::step(before.get());
            if (takesAfter) hasAfter = portable::step(after.get());
        }
        if (any) any_ = true;
        return writer.take();
    }

    const BeforeAndAfter& states_;
    bool wantsChangeset_;
    const VisitorOf& visitorOf_;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<bool> any_ = false;
    std::array<std::string, std::size(tablasHost)> changesets_;
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
