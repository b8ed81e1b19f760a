#pragma once

// Workbooks of one sheet (Excel 97: BIFF8 in a compound file), as large as a measurement wants them.

#include <cstdint>
#include <string>
#include <string_view>

namespace pxtarvo::benchmarks {

class WorkbookWriter {
  public:
    WorkbookWriter();

    // Cells, row by row; positions from 0, up to 65,535 rows and 256 columns.

    void number(std::uint32_t row, std::uint32_t column, double value);
    /// ASCII, up to 8,000 characters.
    void text(std::uint32_t row, std::uint32_t column, std::string_view value);

    /// Writes the file. Raises std::runtime_error where it cannot, or where it would be larger than 7 MB.
    void save(const std::string& path);

  private:
    std::string stream_;  ///< the workbook's records so far
};

}  // namespace pxtarvo::benchmarks
