// Any text as a statement to the host's server, over the host's tables with a few rows: what is understood,
// the database must understand too.

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "devhost/dealer/host_file.h"
#include "platform/portable/clocks.h"
#include "platform/portable/dialect/sql_translator.h"
#include "platform/portable/sqlite/sqlite_connection.h"
#include "platform/portable/sqlite/sqlite_schema.h"
#include "platform/values/runtime_error.h"

namespace {

using namespace pxtarvo;

ObjectRef<portable::SqliteConnection> dealer() {
    auto connection =
        devhost::openEmptyHost(std::make_shared<portable::FixedClock>(CalendarTime{2012, 7, 25, 10, 30, 0}));
    for (const char* row :
         {"INSERT INTO Art (Art_Cod, ART_DES, ART_PVE, Art_FechaEstado) VALUES ('A1','Ñu',1.5,Getdate())",
          "INSERT INTO Art (Art_Cod, Art_barCode) VALUES ('0A1',NULL)",
          "INSERT INTO ArtPro (ARP_Ida, ARP_Idp, ARP_Cop) VALUES (1,4,'A1')",
          "INSERT INTO Exis (Exis_IdArt, Exis_Cantidad) VALUES (1,2.5)"}) {
        connection->Execute(row, adExecuteNoRecords);
    }
    return connection;
}

/// A product of tables may take for ever; that is the statement's own matter.
int giveUp(void* steps) {
    return --*static_cast<int*>(steps) < 0;
}

/// What is translated is a statement that SQLite can read, whatever it says of its names.
void requireReadable(std::string_view statement, sqlite3* database) {
    static portable::SqliteSchema schema;
    schema.refresh(database);
    const std::string sql = portable::translateStatement(statement, schema.tables()).sql;
    sqlite3_stmt* prepared = nullptr;
    const int result =
        sqlite3_prepare_v2(database, sql.c_str(), static_cast<int>(sql.size()), &prepared, nullptr);
    sqlite3_finalize(prepared);
    if (result == SQLITE_OK) return;
    const std::string_view said = sqlite3_errmsg(database);
    for (const char* words : {"syntax error", "unrecognized token", "no such function", "incomplete input"}) {
        if (said.find(words) == said.npos) continue;
        std::fprintf(stderr, "%s: %s\n", sqlite3_errmsg(database), sql.c_str());
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ObjectRef<portable::SqliteConnection> connection = dealer();
    const std::string_view statement(reinterpret_cast<const char*>(data), size);
    int steps = 1000;
    sqlite3_progress_handler(connection->handle(), 100, giveUp, &steps);
    connection->BeginTrans();
    try {
        requireReadable(statement, connection->handle());
        const auto rows = connection->Execute(statement, adOptionUnspecified);
        for (; rows->State() != adStateClosed && !rows->Eof(); rows->MoveNext()) {
            for (std::int32_t column = 0; column < rows->FieldCount(); ++column) rows->Fields(column);
        }
    } catch (const RuntimeError&) {  // the server's refusals
    }
    sqlite3_progress_handler(connection->handle(), 0, nullptr, nullptr);
    connection->RollbackTrans();
    return 0;
}
