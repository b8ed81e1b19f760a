#include "devhost/changes/changeset.h"

#include <memory>
#include <stdexcept>

namespace pxtarvo::devhost {

namespace {

struct EndIteration {
    void operator()(sqlite3_changeset_iter* rows) const noexcept { sqlite3changeset_finalize(rows); }
};

[[noreturn]] void raiseDamaged() {
    throw std::runtime_error("the changes cannot be read");
}

}  // namespace

KeptChange::KeptChange(sqlite3_changeset_iter* row) : row_(row) {
    const char* table = nullptr;
    int operation = 0;
    unsigned char* keys = nullptr;
    if (sqlite3changeset_op(row, &table, &columns_, &operation, nullptr) != SQLITE_OK ||
        sqlite3changeset_pk(row, &keys, nullptr) != SQLITE_OK) {
        raiseDamaged();
    }
    table_ = table;
    inserted_ = operation == SQLITE_INSERT;
    int found = 0;
    for (int column = 0; column < columns_; ++column) {
        if (keys[column] != 0 && ++found == 1) key_ = column;
    }
    if (found > 1) key_ = -1;
}

RowValue KeptChange::before(int column) const {
    sqlite3_value* value = nullptr;
    if (!inserted_ && sqlite3changeset_old(row_, column, &value) != SQLITE_OK) raiseDamaged();
    return RowValue(value);
}

std::int64_t KeptChange::keyValue() const {
    if (key_ < 0) return 0;
    if (!inserted_) return before(key_).whole();
    sqlite3_value* value = nullptr;
    if (sqlite3changeset_new(row_, key_, &value) != SQLITE_OK) raiseDamaged();
    return RowValue(value).whole();
}

void forEachChange(std::string_view changes, const std::function<void(const KeptChange&)>& visit) {
    if (changes.empty()) return;
    sqlite3_changeset_iter* started = nullptr;
    // SQLite reads the bytes only.
    if (sqlite3changeset_start(&started, static_cast<int>(changes.size()),
                               const_cast<char*>(changes.data())) != SQLITE_OK) {
        raiseDamaged();
    }
    const std::unique_ptr<sqlite3_changeset_iter, EndIteration> rows(started);
    int result = sqlite3changeset_next(rows.get());
    for (; result == SQLITE_ROW; result = sqlite3changeset_next(rows.get())) visit(KeptChange(rows.get()));
    if (result != SQLITE_DONE) raiseDamaged();
}

}  // namespace pxtarvo::devhost
