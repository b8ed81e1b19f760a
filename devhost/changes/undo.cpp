#include "devhost/changes/undo.h"

#include <exception>
#include <map>
#include <memory>
#include <stdexcept>

#include "devhost/changes/changeset.h"
#include "devhost/changes/table_columns.h"
#include "host/tables.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

std::string shown(sqlite3_value* value) {
    const ChangedValue changed(value);
    return changed.isNull() ? "Null" : joined({"'", changed.text(), "'"});
}

/// Applies the inverted changes and gathers what does not fit.
class Undoing {
  public:
    explicit Undoing(sqlite3* database) : database_(database) {}

    /// The changes' rows. Raises std::runtime_error for a table that the database lacks or has otherwise.
    std::size_t count(std::string_view changes) {
        std::size_t rows = 0;
        forEachChange(changes, [&](const KeptChange& row) {
            const TableColumns& columns = columnsOf(row.table());
            if (static_cast<int>(columns.names().size()) != row.columnCount() || columns.key() != row.key() ||
                row.key() < 0) {
                throw std::runtime_error(
                    joined({"the database has no table ", row.table(), " like the one that was changed"}));
            }
            ++rows;
        });
        return rows;
    }

    void apply(int size, void* inverted) {
        const int result = sqlite3changeset_apply(database_, size, inverted, nullptr, conflictMet, this);
        if (failure_) std::rethrow_exception(failure_);
        if (result != SQLITE_OK) throw portable::providerError(database_);
    }

    std::vector<std::string> conflicts;

  private:
    static int conflictMet(void* self, int kind, sqlite3_changeset_iter* row) noexcept {
        auto& undoing = *static_cast<Undoing*>(self);
        try {
            undoing.add(kind, row);
            return SQLITE_CHANGESET_OMIT;
        } catch (...) {
            undoing.failure_ = std::current_exception();
            return SQLITE_CHANGESET_ABORT;
        }
    }

    const TableColumns& columnsOf(std::string_view table) {
        const auto known = columns_.find(table);
        if (known != columns_.end()) return known->second;
        return columns_.emplace(table, TableColumns(database_, table)).first->second;
    }

    void add(int kind, sqlite3_changeset_iter* iterator) {
        if (kind == SQLITE_CHANGESET_FOREIGN_KEY) {
            conflicts.emplace_back("a reference to a row would be left without it");
            return;
        }
        const KeptChange row(iterator);
        const TableColumns& columns = columnsOf(row.table());
        std::string line = joined({row.table(), ", ", columns.names().at(static_cast<std::size_t>(row.key())),
                                   " ", std::to_string(row.keyValue())});
        switch (kind) {
            case SQLITE_CHANGESET_NOTFOUND:
                line += ": the row is gone";
                break;
            case SQLITE_CHANGESET_DATA:
                addDifferences(row, iterator, columns, line);
                break;
            case SQLITE_CHANGESET_CONFLICT:
                line += ": another row has taken its place";
                break;
            default:
                line += ": the row breaks a rule of the table";
                break;
        }
        conflicts.push_back(std::move(line));
    }

    /// The values that the run left and that are others now.
    static void addDifferences(const KeptChange& row, sqlite3_changeset_iter* iterator,
                               const TableColumns& columns, std::string& line) {
        std::string_view separator = ": ";
        for (int column = 0; column < row.columnCount(); ++column) {
            const ChangedValue left = row.before(column);  // the inverted change's
            sqlite3_value* found = nullptr;
            if (!left.known() || sqlite3changeset_conflict(iterator, column, &found) != SQLITE_OK) continue;
            const std::string was = shown(left.raw());
            const std::string is = shown(found);
            if (was == is) continue;
            line.append(separator).append(columns.names().at(static_cast<std::size_t>(column)));
            line.append(" is ").append(is).append(", the run left ").append(was);
            separator = "; ";
        }
    }

    sqlite3* database_;
    std::map<std::string, TableColumns, std::less<>> columns_;
    std::exception_ptr failure_;
};

}  // namespace

UndoOutcome undoChanges(portable::SqliteConnection& connection, std::string_view changes) {
    Undoing undoing(connection.handle());
    UndoOutcome outcome;
    outcome.rows = undoing.count(changes);
    if (outcome.rows == 0) return outcome;

    int size = 0;
    void* inverted = nullptr;
    if (sqlite3changeset_invert(static_cast<int>(changes.size()), changes.data(), &size, &inverted) !=
        SQLITE_OK) {
        throw std::runtime_error("the changes cannot be read");
    }
    const portable::SqliteMemory owner(inverted);
    connection.BeginTrans();
    try {
        undoing.apply(size, inverted);
        undoing.conflicts.empty() ? connection.CommitTrans() : connection.RollbackTrans();
    } catch (...) {
        connection.RollbackTrans();
        throw;
    }
    outcome.conflicts = std::move(undoing.conflicts);
    if (!outcome.conflicts.empty()) outcome.rows = 0;
    return outcome;
}

}  // namespace pxtarvo::devhost
