// Any bytes as a table's CSV file: every cell as a value of every kind of column.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "devhost/exchange/cell_binding.h"
#include "devhost/exchange/csv_rows.h"
#include "platform/portable/clocks.h"
#include "platform/portable/sqlite/sqlite_connection.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace pxtarvo;
    using portable::ColumnType;
    static const portable::FixedClock clock(CalendarTime{2012, 7, 25, 10, 30, 0});
    static const auto connection = portable::SqliteConnection::create(":memory:", clock);
    static const auto statement = portable::prepare(connection->handle(), "SELECT ?");
    constexpr ColumnType types[] = {ColumnType::Bit,  ColumnType::Int,      ColumnType::Float,
                                    ColumnType::Text, ColumnType::DateTime, ColumnType::Undeclared};
    try {
        devhost::CsvRows rows(std::string(reinterpret_cast<const char*>(data), size));
        std::size_t line = 0;
        while (rows.next()) {
            if (rows.line() < line || rows.cells().empty() || rows.bytesRead() > size) std::abort();
            line = rows.line();
            for (const devhost::CsvCell& cell : rows.cells()) {
                if (!devhost::isUtf8(cell.text)) std::abort();
                for (const ColumnType type : types) {
                    const devhost::StoredColumn column{"Exis_Lote", type, 30};
                    const auto reason = devhost::bindCell(statement.get(), 1, column, cell);
                    if (reason && reason->empty()) std::abort();
                    sqlite3_reset(statement.get());
                }
            }
        }
    } catch (const std::runtime_error&) {
    }
    return 0;
}
