#pragma once

// A workbook that no sample file holds: the cells of its first sheet are given by the test, the others are
// empty.

#include <functional>
#include <vector>

#include "platform/portable/files/drive_paths.h"
#include "platform/spreadsheet.h"

namespace pxtarvo::test {

inline constexpr int memoryWorkbookSheets = 3;

/// A row of the sheet, from its first column on.
using SheetRow = std::vector<Variant>;

/// What makes the applications that open this workbook whatever they are asked for, for
/// DevHostOptions::makeSpreadsheet. `called` is told the name of each call first, a new row's as "sheet.row".
std::function<ObjectRef<SpreadsheetApplication>(const portable::DrivePaths&)> memoryWorkbook(
    std::vector<SheetRow> rows, std::function<void(const char*)> called = [](const char*) {});

}  // namespace pxtarvo::test
