#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/platform.h"
#include "platform/portable/files/drive_paths.h"
#include "platform/portable/files/sequential_files.h"
#include "platform/portable/screenless/simulated_desktop.h"

namespace pxtarvo::portable {

/// A connection to Access files.
ObjectRef<Connection> accessFileReader(const DrivePaths& paths);

/// What a portable platform is made of.
struct PortableOptions {
    std::string driveC;  ///< folder that stands for drive C:, empty for none
    std::shared_ptr<const Clock> clock;
    std::string moduleFolder = "C:\\TARVO";
    StandIn standIn{};
    SequentialFiles::Output output = SequentialFiles::Output::Kept;
    /// Makes the connections that the plug-in creates; by default readers of Access files.
    std::function<ObjectRef<Connection>(const DrivePaths&)> makeConnection;
    /// Makes the spreadsheet applications that the plug-in creates; by default readers of their files.
    std::function<ObjectRef<SpreadsheetApplication>(const DrivePaths&)> makeSpreadsheet{};
};

/// The platform without Windows.
class PortablePlatform : public Platform {
  public:
    /// `user` must outlive the platform.
    PortablePlatform(PortableOptions options, SimulatedUser& user);

    ObjectRef<Connection> createConnection() override { return options_.makeConnection(paths_); }
    ObjectRef<Recordset> createRecordset() override;
    ObjectRef<SpreadsheetApplication> createSpreadsheet() override {
        return options_.makeSpreadsheet(paths_);
    }
    SimulatedDesktop& desktop() override { return desktop_; }
    SequentialFiles& textFiles() override { return files_; }
    const Clock& clock() const override { return *options_.clock; }
    const Locale& locale() const override { return spanishLocale(); }
    std::string moduleFolder() const override { return options_.moduleFolder; }

    const DrivePaths& paths() const noexcept { return paths_; }

  private:
    PortableOptions options_;
    DrivePaths paths_;
    SequentialFiles files_;
    SimulatedDesktop desktop_;
};

}  // namespace pxtarvo::portable
