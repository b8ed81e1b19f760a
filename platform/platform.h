#pragma once

// Everything that the system asks of the machine it runs on. One body is the DLL's (platform/windows), the
// other runs without Windows (platform/portable).

#include <string>

#include "platform/database.h"
#include "platform/desktop.h"
#include "platform/spreadsheet.h"
#include "platform/text_files.h"
#include "platform/values/clock.h"
#include "platform/values/locale.h"

namespace pxtarvo {

class Platform {
  public:
    virtual ~Platform() = default;

    /// A new ADO connection, closed, for a source file.
    virtual ObjectRef<Connection> createConnection() = 0;
    /// A new ADO recordset, closed.
    virtual ObjectRef<Recordset> createRecordset() = 0;
    /// A new spreadsheet application; 429 where there is none.
    virtual ObjectRef<SpreadsheetApplication> createSpreadsheet() = 0;

    virtual Desktop& desktop() = 0;
    virtual TextFiles& textFiles() = 0;
    virtual const Clock& clock() const = 0;
    virtual const Locale& locale() const = 0;
    /// The folder of the plug-in itself, without a closing separator.
    virtual std::string moduleFolder() const = 0;
};

}  // namespace pxtarvo
