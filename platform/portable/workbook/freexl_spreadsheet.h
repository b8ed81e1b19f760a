#pragma once

// The spreadsheet application without the application: Excel 97 to 2003 workbooks (.xls), read by libfreexl
// and, for the cells that it passes over, by BiffResults.

#include <cstdint>
#include <string_view>

#include "platform/portable/files/drive_paths.h"
#include "platform/spreadsheet.h"

namespace pxtarvo::portable {

/// The error number of everything that the spreadsheet application refuses.
inline constexpr std::int32_t spreadsheetRefused = 1004;

/// Cells have the values that automation gives: texts whole, every number as Double, dates as Date, logical
/// values as Boolean, errors as ErrorValue (the SCODE of #N/A is 0x800A07FA), formulas by the result that the
/// file keeps. A formula's number is a Double even where its cell is formatted as a date. A position outside
/// 1 to 65,536 rows and 256 columns is 1004.
class FreexlApplication : public SpreadsheetApplication {
  public:
    explicit FreexlApplication(DrivePaths paths);
    /// 1004 where the file is missing or is no workbook of this kind, or is protected by a password.
    ObjectRef<Workbook> OpenWorkbook(std::string_view path) override;

  private:
    DrivePaths paths_;
};

}  // namespace pxtarvo::portable
