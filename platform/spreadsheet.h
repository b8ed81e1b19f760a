#pragma once

// What the system uses of the spreadsheet application's automation. The references are released when the run
// ends; the application is neither made visible, nor told to close the workbook, nor to quit.

#include <cstdint>
#include <string_view>

#include "platform/object_ref.h"
#include "platform/values/variant.h"

namespace pxtarvo {

class Worksheet {
  public:
    virtual ~Worksheet() = default;
    /// The value of the cell at 1-based row and column; Empty for one that was never filled.
    virtual Variant Cells(std::int32_t row, std::int32_t column) const = 0;
};

class Workbook {
  public:
    virtual ~Workbook() = default;
    /// Charts included.
    virtual std::int32_t SheetCount() const = 0;
    /// By 1-based position; 9 (SubscriptOutOfRange) for an unknown one, 13 (TypeMismatch) for one that is no
    /// worksheet, such as a chart.
    virtual ObjectRef<Worksheet> Sheet(std::int32_t position) const = 0;
};

class SpreadsheetApplication {
  public:
    virtual ~SpreadsheetApplication() = default;
    /// Raises 1004 with the application's description when the file cannot be opened.
    virtual ObjectRef<Workbook> OpenWorkbook(std::string_view path) = 0;
};

}  // namespace pxtarvo
