#pragma once

// The machine as the DLL finds it.

#include "platform/platform.h"
#include "platform/windows/screen/windows_desktop.h"
#include "platform/windows/system/ansi_text_files.h"
#include "platform/windows/system/system_clock.h"

namespace pxtarvo::windows {

/// For one thread: its windows, its open file numbers.
class WindowsPlatform : public Platform {
  public:
    ObjectRef<Connection> createConnection() override;
    ObjectRef<Recordset> createRecordset() override;
    ObjectRef<SpreadsheetApplication> createSpreadsheet() override;
    Desktop& desktop() override { return desktop_; }
    TextFiles& textFiles() override { return files_; }
    const Clock& clock() const override { return clock_; }
    const Locale& locale() const override;
    std::string moduleFolder() const override;

  private:
    SystemClock clock_;
    AnsiTextFiles files_;
    WindowsDesktop desktop_;
};

/// Full path of the DLL that holds this code; empty where the system does not tell.
std::string modulePath();

}  // namespace pxtarvo::windows
