#pragma once

#include "platform/spreadsheet.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::windows {

/// The installed spreadsheet application through automation, asked in US English whatever its own language
/// is.
class SpreadsheetAutomation : public SpreadsheetApplication {
  public:
    /// Starts the application; 429 where none is installed.
    static ObjectRef<SpreadsheetApplication> create();

    explicit SpreadsheetAutomation(Dispatch application) : application_(std::move(application)) {}
    ObjectRef<Workbook> OpenWorkbook(std::string_view path) override;

  private:
    Dispatch application_;
};

}  // namespace pxtarvo::windows
