#pragma once

// A statement of SQLite's own, prepared once and bound, for the floors.

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/values/runtime_error.h"
#include "platform/values/variant.h"

namespace pxtarvo::benchmarks {

/// Every member raises RuntimeError with SQLite's own text.
class Statement {
  public:
    Statement(sqlite3* database, const char* sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) !=
            SQLITE_OK) {
            throw RuntimeError(ErrorNumber::ProviderFailure, sqlite3_errmsg(database));
        }
        statement_.reset(statement);
    }

    /// Binds the values to the parameters from the first on. Texts must live until the statement has run.
    template <class... Values>
    Statement& bind(const Values&... values) {
        int position = 0;
        (bindAt(++position, values), ...);
        return *this;
    }

    /// To the next row; resets the statement when there is none.
    bool step() {
        const int result = sqlite3_step(statement_.get());
        if (result == SQLITE_ROW) return true;
        sqlite3_reset(statement_.get());
        if (result == SQLITE_DONE) return false;
        throw RuntimeError(ErrorNumber::ProviderFailure, sqlite3_errmsg(sqlite3_db_handle(statement_.get())));
    }
    void run() {
        while (step()) {
        }
    }
    /// The first column of the first row, 0 without rows; the statement has run then.
    std::int64_t found() {
        if (!step()) return 0;
        const std::int64_t id = whole(0);
        run();
        return id;
    }
    bool isNull(int column) { return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL; }
    std::int64_t whole(int column) { return sqlite3_column_int64(statement_.get(), column); }
    std::string text(int column) {
        const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
        return std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)));
    }
    double number(int column) { return sqlite3_column_double(statement_.get(), column); }
    int columnNamed(std::string_view name) const {
        for (int column = 0; column < sqlite3_column_count(statement_.get()); ++column) {
            if (name == sqlite3_column_name(statement_.get(), column)) return column;
        }
        return -1;
    }

  private:
    void bindAt(int position, std::int64_t value) { sqlite3_bind_int64(statement_.get(), position, value); }
    void bindAt(int position, double value) { sqlite3_bind_double(statement_.get(), position, value); }
    void bindAt(int position, std::string_view value) {
        sqlite3_bind_text(statement_.get(), position, value.data(), static_cast<int>(value.size()),
                          SQLITE_STATIC);
    }
    void bindAt(int position, const std::string& value) { bindAt(position, std::string_view(value)); }
    void bindAt(int position, const Variant& value) {
        if (const auto* text = value.get<std::string>()) return bindAt(position, std::string_view(*text));
        sqlite3_bind_null(statement_.get(), position);
    }

    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement_{nullptr, sqlite3_finalize};
};

}  // namespace pxtarvo::benchmarks
