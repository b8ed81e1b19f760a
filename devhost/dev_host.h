#pragma once

// A host of our own: a database file, a clock, a user, and the plug-in's instance with the context that it
// works through. The command line, the tests and the measurements all run the plug-in through it.

#include <memory>
#include <string>
#include <vector>

#include "devhost/host_stage.h"
#include "devhost/library/host_context.h"
#include "plugin/pxtarvor.h"

namespace pxtarvo::devhost {

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

    DevUser& user() const noexcept { return *parts_.stage->user; }
    portable::PortablePlatform& platform() const noexcept { return parts_.stage->platform; }
    portable::SimulatedDesktop& desktop() const noexcept { return platform().desktop(); }
    PXTarvor& instance() const noexcept { return *instance_; }
    /// What was called against the rules so far; empty when all was well.
    const std::vector<std::string>& violations() const noexcept { return state().checks->violations(); }

    /// The host's own connection: what runs on it is neither recorded nor checked.
    const ObjectRef<Connection>& connection() const noexcept { return state().connection; }
    /// The same, for what only a file of our own can do.
    const ObjectRef<portable::SqliteConnection>& database() const noexcept { return parts_.database; }
    /// Parameters, the user's identifier and the hook before each write, shared by all contexts.
    HostState& state() const noexcept { return *parts_.state; }

    /// Hands the plug-in another context, in the middle of a run too: a new one of this host, or any given
    /// one (an empty one as well).
    void handOverNewContext();
    void handOver(const ObjectRef<HostDatabase>& context);

  private:
    HostParts parts_;
    std::shared_ptr<PXTarvor> instance_;
};

}  // namespace pxtarvo::devhost
