#pragma once

// The spreadsheet application without the application: Excel 5 to 2003 workbooks (.xls).

#include <string_view>

#include "platform/portable/files/drive_paths.h"
#include "platform/portable/workbook/refusals.h"
#include "platform/spreadsheet.h"

namespace pxtarvo::portable {

/// Cells have the values that automation gives: texts whole, numbers as Double, those that their format shows
/// as dates or times as Date, logical values as Boolean, errors as ErrorValue (the SCODE of #N/A is
/// 0x800A07FA), formulas by the result that the file keeps. An amount of money is a Double too, not a
/// Currency. A position outside 1 to 65,536 rows and 256 columns is 1004. Sheets are charts and macros too; a
/// chart taken as a Worksheet is 13, a damaged one 1004.
class WorkbookReader : public SpreadsheetApplication {
  public:
    explicit WorkbookReader(DrivePaths paths);
    /// 1004 where the file is missing, is no workbook of this kind, or is protected by a password. Takes
    /// memory in proportion to the file.
    ObjectRef<Workbook> OpenWorkbook(std::string_view path) override;

  private:
    DrivePaths paths_;
};

}  // namespace pxtarvo::portable
