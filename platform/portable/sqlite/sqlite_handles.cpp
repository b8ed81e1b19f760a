#include "platform/portable/sqlite/sqlite_handles.h"

#include <string>

#include "platform/portable/dialect/sql_errors.h"

namespace pxtarvo::portable {

namespace {

/// A failure that has a text of its own. An extended code is looked for before the primary one.
struct CodeText {
    int code;
    ErrorNumber number;
    std::string_view text;
    bool withDetail;  ///< SQLite's message from its first ": " on follows the text
};

constexpr CodeText codeTexts[] = {
    {SQLITE_CONSTRAINT_NOTNULL, ErrorNumber::IntegrityViolation,
     "No se puede insertar el valor NULL en la columna", true},
    {SQLITE_CONSTRAINT_UNIQUE, ErrorNumber::IntegrityViolation, "Infracción de la restricción UNIQUE", true},
    {SQLITE_CONSTRAINT_PRIMARYKEY, ErrorNumber::IntegrityViolation,
     "Infracción de la restricción PRIMARY KEY", true},
    {SQLITE_CONSTRAINT_CHECK, ErrorNumber::IntegrityViolation, "Infracción de la restricción CHECK", true},
    {SQLITE_CONSTRAINT_FOREIGNKEY, ErrorNumber::IntegrityViolation,
     "Infracción de la restricción FOREIGN KEY", false},
    {SQLITE_BUSY, ErrorNumber::ProviderFailure, "La base de datos está bloqueada por otro proceso.", false},
    {SQLITE_LOCKED, ErrorNumber::ProviderFailure, "La base de datos está bloqueada por otra operación.",
     false},
    {SQLITE_READONLY, ErrorNumber::ProviderFailure, "La base de datos es de sólo lectura.", false},
    {SQLITE_FULL, ErrorNumber::ProviderFailure, "No queda espacio en el disco para la base de datos.", false},
    {SQLITE_IOERR, ErrorNumber::ProviderFailure,
     "Error de lectura o escritura en el archivo de la base de datos.", false},
    {SQLITE_CORRUPT, ErrorNumber::ProviderFailure, "El archivo de la base de datos está dañado.", false},
    {SQLITE_NOTADB, ErrorNumber::ProviderFailure, "El archivo no es una base de datos.", false},
    {SQLITE_CANTOPEN, ErrorNumber::ProviderFailure, "No se puede abrir el archivo de la base de datos.",
     false},
    {SQLITE_NOMEM, ErrorNumber::ProviderFailure, "No hay memoria suficiente para la base de datos.", false},
};

/// A compiler message of SQLite: what stands around the offending word, and what the server says of it.
struct MessageText {
    std::string_view before;
    std::string_view after;
    RuntimeError (*error)(std::string_view word);
};

constexpr MessageText messageTexts[] = {
    {"no such table: ", "", &noSuchTable},
    {"no such column: ", "", &noSuchColumn},
    {"near \"", "\": syntax error", &wrongSyntaxNear},
};

}  // namespace

RuntimeError providerError(sqlite3* database) {
    const int code = sqlite3_extended_errcode(database);
    const std::string_view message = sqlite3_errmsg(database);
    for (const int wanted : {code, code & 0xFF}) {
        for (const CodeText& known : codeTexts) {
            if (known.code != wanted) continue;
            std::string text(known.text);
            const std::size_t colon = message.find(": ");
            if (known.withDetail && colon != message.npos) text += message.substr(colon);
            return {known.number, text};
        }
    }
    if ((code & 0xFF) == SQLITE_CONSTRAINT) return {ErrorNumber::IntegrityViolation, std::string(message)};
    for (const MessageText& known : messageTexts) {
        if (!message.starts_with(known.before) || !message.ends_with(known.after)) continue;
        return known.error(
            message.substr(known.before.size(), message.size() - known.before.size() - known.after.size()));
    }
    const bool refused = (code & 0xFF) == SQLITE_ERROR;
    return {refused ? ErrorNumber::SqlSyntax : ErrorNumber::ProviderFailure, std::string(message)};
}

StatementHandle prepare(sqlite3* database, std::string_view sql, unsigned flags) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v3(database, sql.data(), static_cast<int>(sql.size()), flags, &statement, nullptr) !=
        SQLITE_OK) {
        throw providerError(database);
    }
    return StatementHandle(statement);
}

bool step(sqlite3_stmt* statement) {
    const int result = sqlite3_step(statement);
    if (result == SQLITE_ROW) return true;
    if (result != SQLITE_DONE) throw providerError(sqlite3_db_handle(statement));
    return false;
}

void run(sqlite3* database, const char* sql) {
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) throw providerError(database);
}

void copyDatabase(sqlite3* from, sqlite3* to) {
    sqlite3_backup* const copying = sqlite3_backup_init(to, "main", from, "main");
    if (!copying) throw providerError(to);
    constexpr int allPages = -1;
    const int result = sqlite3_backup_step(copying, allPages);
    sqlite3_backup_finish(copying);  // leaves its error with `to`
    if (result != SQLITE_DONE) throw providerError(to);
}

}  // namespace pxtarvo::portable
