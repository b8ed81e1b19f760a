#include "platform/portable/sqlite/read_hold.h"

namespace pxtarvo::portable {

void ReadHold::begin() noexcept {
    if (walks_++ > 0 || !database_) return;
    if (!reader_) {
        sqlite3_stmt* reader = nullptr;
        sqlite3_prepare_v3(database_, "SELECT 1 FROM sqlite_schema", -1, SQLITE_PREPARE_PERSISTENT, &reader,
                           nullptr);
        reader_.reset(reader);
    }
    sqlite3_step(reader_.get());  // a statement that has rows left keeps its transaction
}

void ReadHold::finish() noexcept {
    reader_.reset();
    database_ = nullptr;
}

}  // namespace pxtarvo::portable
