// Any bytes as a list: every row and every value of the two tables that the imports read, twice.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/portable/access/jet_connection.h"
#include "platform/values/text.h"
#include "tests/fuzz/memory_file.h"

namespace pxtarvo::portable {
namespace {

void readList(Connection& connection, std::string_view table) {
    try {
        const auto counted = connection.Execute(joined({"SELECT count(*) FROM ", table}), adCmdText);
        counted->Fields(0);
        const auto rows = connection.Execute(joined({"SELECT * FROM ", table}), adCmdText);
        for (int pass = 0; pass < 2 && !rows->Eof(); ++pass) {
            for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
                for (std::int32_t column = 0; column < rows->FieldCount(); ++column) {
                    try {
                        rows->Fields(column);
                    } catch (const RuntimeError&) {  // this value; the next one may be whole
                    }
                }
            }
        }
    } catch (const RuntimeError&) {  // what a file that is not whole ends in
    }
}

}  // namespace
}  // namespace pxtarvo::portable

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace pxtarvo;
    using namespace pxtarvo::portable;
    const auto connection = makeObject<JetConnection>(DrivePaths());
    connection->ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" +
                                 tests::memoryFile(data, size));
    try {
        connection->Open("", "", adOptionUnspecified);
    } catch (const RuntimeError&) {
        return 0;
    }
    for (const char* table : {"List", "31EUR000"}) readList(*connection, table);
    return 0;
}
