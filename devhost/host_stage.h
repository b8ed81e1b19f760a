#pragma once

// What a host of our own stands on, however its objects reach the plug-in.

#include <functional>
#include <memory>
#include <string>

#include "devhost/library/dev_user.h"
#include "devhost/library/field_helper.h"
#include "devhost/library/host_state.h"
#include "devhost/library/server_cursors.h"
#include "devhost/record/protocol_checks.h"
#include "devhost/record/recorder.h"
#include "platform/portable/portable_platform.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

/// What the host works on.
enum class HostData {
    File,   ///< the database file
    Copy,   ///< a copy of it in memory: the file stays as it is
    Empty,  ///< the host's tables in memory, without rows
};

struct DevHostOptions {
    std::string database{};  ///< an existing file, UTF-8
    HostData data = HostData::File;
    CursorLocation cursor = CursorLocation::Client;  ///< of the results that the plug-in gets
    std::string driveC{};                            ///< folder that stands for drive C:, empty for none
    std::string articleFile{};  ///< stands for the article file of the location update, empty for none
    std::shared_ptr<const Clock> clock{};  ///< the machine's own when empty
    std::shared_ptr<Recorder> recorder{};  ///< none when empty
    /// Hands the plug-in a new context object after every use, so that one that is kept is noticed. For
    /// tests.
    bool rotateContexts = false;
    /// Makes the connections that the plug-in opens on source lists; readers of Access files when empty. To
    /// be read through a recordset of the platform, what it makes must also be a portable::RowSource.
    std::function<ObjectRef<Connection>(const portable::DrivePaths&)> makeSource{};
    /// Makes the spreadsheet applications that the plug-in creates; readers of their files when empty.
    std::function<ObjectRef<SpreadsheetApplication>(const portable::DrivePaths&)> makeSpreadsheet{};
};

/// The user and the platform of a host. The plug-in's instance keeps them and outlives the host.
class HostStage {
  public:
    HostStage(const DevHostOptions& options, const std::shared_ptr<ProtocolChecks>& checks);

    const std::shared_ptr<DevUser> user;
    portable::PortablePlatform platform;  ///< its connections are recorded and checked

    std::unique_ptr<DevFieldHelper> makeFieldHelper() const;

  private:
    std::shared_ptr<Recorder> recorder_;
};

/// A host's state and stage. Where contexts are replaced after use, `handOverNewContext` does it.
struct HostParts {
    /// Opens the database; raises the provider's error when the file is missing or no database.
    HostParts(DevHostOptions options, std::function<void()> handOverNewContext);

    std::shared_ptr<HostState> state = std::make_shared<HostState>();
    ObjectRef<portable::SqliteConnection> database;  ///< the state's connection
    std::shared_ptr<HostStage> stage;
};

}  // namespace pxtarvo::devhost
