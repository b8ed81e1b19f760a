#pragma once

// A host of our own: a database file, a clock, a user, and the plug-in's instance with the context that it
// works through. The command line, the tests and the measurements all run the plug-in through it.

#include <functional>
#include <memory>
#include <string>

#include "devhost/library/dev_user.h"
#include "devhost/library/host_context.h"
#include "devhost/record/host_write.h"
#include "devhost/record/protocol_checks.h"
#include "devhost/record/recorder.h"
#include "platform/portable/portable_platform.h"
#include "plugin/pxtarvor.h"

namespace pxtarvo::devhost {

struct DevHostOptions {
    std::string database;     ///< an existing file, UTF-8
    std::string driveC;       ///< folder that stands for drive C:, empty for none
    std::string articleFile;  ///< stands for the article file of the location update, empty for none
    std::shared_ptr<const Clock> clock;  ///< the machine's own when empty
    std::shared_ptr<Recorder> recorder;  ///< none when empty
    /// Hands the plug-in a new context object after every use, so that one that is kept is noticed. For
    /// tests.
    bool rotateContexts = false;
    /// Makes the connections that the plug-in opens on source lists; readers of Access files when empty. To
    /// be read through a recordset of the platform, what it makes must also be a portable::RowSource.
    std::function<ObjectRef<Connection>(const portable::DrivePaths&)> makeSource;
    /// Makes the spreadsheet applications that the plug-in creates; readers of their files when empty.
    std::function<ObjectRef<SpreadsheetApplication>(const portable::DrivePaths&)> makeSpreadsheet;
};

class DevHost {
  public:
    /// Opens the database and creates the plug-in's instance; raises the provider's error when the file is
    /// missing or no database. The instance becomes the calling thread's goInstancia.
    explicit DevHost(DevHostOptions options);
    DevHost(const DevHost&) = delete;
    DevHost& operator=(const DevHost&) = delete;
    /// Takes the context back from the plug-in, so that the database is closed.
    ~DevHost();

    /// The import window, until it is closed; an error of its loading leaves as it is.
    void run();

    DevUser& user() const noexcept;
    portable::PortablePlatform& platform() const noexcept;
    portable::SimulatedDesktop& desktop() const noexcept { return platform().desktop(); }
    PXTarvor& instance() const noexcept { return *instance_; }
    /// What was called against the rules so far; empty when all was well.
    const std::vector<std::string>& violations() const noexcept { return checks_->violations(); }

    /// The host's own connection: what runs on it is neither recorded nor checked.
    const ObjectRef<Connection>& connection() const noexcept { return state_->connection; }
    /// Parameters, the user's identifier and the hook before each write, shared by all contexts.
    HostState& state() const noexcept { return *state_; }

    /// Hands the plug-in another context, in the middle of a run too: a new one of this host, or any given
    /// one (an empty one as well).
    void handOverNewContext();
    void handOver(const ObjectRef<HostDatabase>& context);

  private:
    struct Stage;

    std::shared_ptr<ProtocolChecks> checks_;
    std::shared_ptr<HostState> state_;
    std::shared_ptr<Stage> stage_;
    std::shared_ptr<PXTarvor> instance_;
};

}  // namespace pxtarvo::devhost
