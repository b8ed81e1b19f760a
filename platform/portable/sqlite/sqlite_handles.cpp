#include "platform/portable/sqlite/sqlite_handles.h"

#include <algorithm>
#include <string>

#include "platform/portable/dialect/sql_errors.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

/// A failure that has a text of its own. An extended code is looked for before the primary one.
struct CodeText {
    int code;
    std::string_view text;
};

constexpr CodeText codeTexts[] = {
    {SQLITE_CONSTRAINT_NOTNULL, "No se puede insertar el valor NULL en la columna"},
    {SQLITE_CONSTRAINT_UNIQUE, "Infracción de la restricción UNIQUE"},
    {SQLITE_CONSTRAINT_PRIMARYKEY, "Infracción de la restricción PRIMARY KEY"},
    {SQLITE_CONSTRAINT_CHECK, "Infracción de la restricción CHECK"},
    {SQLITE_CONSTRAINT_FOREIGNKEY, "Infracción de la restricción FOREIGN KEY"},
    {SQLITE_BUSY, "La base de datos está bloqueada por otro proceso."},
    {SQLITE_LOCKED, "La base de datos está bloqueada por otra operación."},
    {SQLITE_READONLY, "La base de datos es de sólo lectura."},
    {SQLITE_FULL, "No queda espacio en el disco para la base de datos."},
    {SQLITE_IOERR, "Error de lectura o escritura en el archivo de la base de datos."},
    {SQLITE_CORRUPT, "El archivo de la base de datos está dañado."},
    {SQLITE_NOTADB, "El archivo no es una base de datos."},
    {SQLITE_CANTOPEN, "No se puede abrir el archivo de la base de datos."},
    {SQLITE_NOMEM, "No hay memoria suficiente para la base de datos."},
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
    const int primary = code & 0xFF;
    const bool constraint = primary == SQLITE_CONSTRAINT;
    const ErrorNumber number = constraint ? ErrorNumber::IntegrityViolation : ErrorNumber::ProviderFailure;
    for (const int wanted : {code, primary}) {
        const auto known = std::ranges::find(codeTexts, wanted, &CodeText::code);
        if (known == std::end(codeTexts)) continue;
        // What a constraint is broken by stands in SQLite's message, from its first ": " on.
        const std::size_t colon = constraint ? message.find(": ") : message.npos;
        return {number, joined({known->text, message.substr(std::min(colon, message.size()))})};
    }
    if (constraint) return {number, std::string(message)};
    for (const MessageText& known : messageTexts) {
        if (!message.starts_with(known.before) || !message.ends_with(known.after)) continue;
        return known.error(
            message.substr(known.before.size(), message.size() - known.before.size() - known.after.size()));
    }
    return {primary == SQLITE_ERROR ? ErrorNumber::SqlSyntax : number, std::string(message)};
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
