#pragma once

// Workbooks of one sheet (Excel 97: BIFF8 in a compound file), as large as a measurement wants them.

#include <string>
#include <string_view>

namespace pxtarvo::benchmarks {

// Cells of the sheet, to be put one behind the other row by row; positions from 0, up to 65,535 rows and 256
// columns.

std::string numberCell(int row, int column, double value);
/// ASCII, up to 8,000 characters.
std::string textCell(int row, int column, std::string_view value);

/// Writes the file. Raises std::runtime_error where it cannot, or where it would be larger than 7 MB.
void saveWorkbook(const std::string& path, std::string_view cells);

}  // namespace pxtarvo::benchmarks
