#pragma once

// A workbook that is watched while a run reads its first sheet, and that a further run reads on below the row
// at which the one before stopped.

#include <functional>
#include <memory>

#include "devhost/watch/list_watch.h"
#include "platform/portable/files/drive_paths.h"
#include "platform/spreadsheet.h"

namespace pxtarvo::devhost {

/// What makes the spreadsheet applications, for DevHostOptions::makeSpreadsheet. A row is one whose first
/// cell was read and is not blank; column 1 stands at position 1, position 0 for nothing.
std::function<ObjectRef<SpreadsheetApplication>(const portable::DrivePaths&)> watchedSpreadsheet(
    std::shared_ptr<ListWatch> watch);

}  // namespace pxtarvo::devhost
