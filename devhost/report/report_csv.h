#pragma once

// The report's tables as files for a spreadsheet: UTF-8 with its mark, semicolons between the cells, a comma
// before the decimals, as a Spanish one reads them.

#include <string>

#include "devhost/report/run_report.h"

namespace pxtarvo::devhost {

/// Writes NAME.csv for each table that has rows, and removes the files of this name of the tables that have
/// none. The folder is made where it is missing. A cell that a spreadsheet would take for a formula begins
/// with an apostrophe. Raises std::runtime_error with the name of a file that cannot be written.
void writeReportTables(const RunReport& report, const std::string& folder);

}  // namespace pxtarvo::devhost
