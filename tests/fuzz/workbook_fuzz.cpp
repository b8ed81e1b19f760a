// Any bytes as a workbook: every cell that the barcode list could read, of each sheet.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/portable/workbook/workbook_reader.h"
#include "platform/values/runtime_error.h"
#include "tests/fuzz/memory_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace pxtarvo;
    constexpr std::int32_t sheetsRead = 4;
    portable::WorkbookReader application{portable::DrivePaths()};
    try {
        const auto workbook = application.OpenWorkbook(tests::memoryFile(data, size));
        if (workbook->SheetCount() < 1) std::abort();
        for (std::int32_t position = std::min(workbook->SheetCount(), sheetsRead); position > 0; --position) {
            const auto sheet = workbook->Sheet(position);
            for (std::int32_t row = 1; row <= 400; ++row) {
                for (std::int32_t column = 1; column <= 6; ++column) sheet->Cells(row, column);
            }
        }
    } catch (const RuntimeError& error) {
        if (error.number() != portable::spreadsheetRefused && !error.is(ErrorNumber::TypeMismatch))
            std::abort();
    }
    return 0;
}
