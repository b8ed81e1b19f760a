#pragma once

// The tables of a report: what the page shows and what the CSV files hold, each column once.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/report/run_report.h"

namespace pxtarvo::devhost {

/// How a cell is written: on the page as the dealer reads it, in a file as a spreadsheet does.
enum class CellForm { Page, File };

struct ReportColumn {
    std::string caption;
    bool number = false;
};

/// Rows are made as they are asked for. Valid as long as the report that it was made of.
struct ReportTable {
    std::string_view name;  ///< of the CSV file
    std::string title;
    std::string_view note{};  ///< a sentence under the title, may be empty
    std::vector<ReportColumn> columns;
    std::size_t rows = 0;
    std::function<std::string(std::size_t row, std::size_t column, CellForm form)> cell;
    bool folded = false;  ///< shown closed on the page
    bool onPage = true;
    bool inFile = true;
};

/// The names of all tables that are ever written to files.
inline constexpr std::string_view reportTableNames[] = {
    "faltas", "filas-con-faltas", "avisos",      "precios",    "bajas",
    "nuevos", "borrados",         "existencias", "ubicaciones"};

/// In the order of the page; tables without rows are left out.
std::vector<ReportTable> reportTables(const RunReport& report);

}  // namespace pxtarvo::devhost
