#pragma once

// The development host over the real plug-in: the same portable objects as DevHost's, offered through COM to
// the DLL, and a user in front of its real windows.

#include <memory>
#include <string>

#include "devhost/dev_host.h"
#include "devhost/wine/objects/class_objects.h"
#include "devhost/wine/screen/screen_user.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::devhost {

/// A loaded plug-in, registered for this user; it stays loaded.
class PlugIn {
  public:
    /// `path` is the DLL's in this machine's own file system. Raises std::runtime_error when it cannot be
    /// loaded or does not register itself.
    explicit PlugIn(const std::string& path);
    HMODULE module() const noexcept { return module_; }

  private:
    HMODULE module_ = nullptr;
};

class WineHost {
  public:
    /// As DevHost, with the apartment of the calling thread entered already. The clock of the options serves
    /// the database only: the plug-in reads the machine's. The record goes to `record`, not to the recorder
    /// of the options. `screen` needs neither recorder nor newContext.
    WineHost(const PlugIn& plugIn, DevHostOptions options, Recorder::Sink record, ScreenSession screen = {});
    WineHost(const WineHost&) = delete;
    WineHost& operator=(const WineHost&) = delete;
    /// The plug-in keeps the instance and the context that was handed over last.
    ~WineHost();

    /// jImportacionTarifas; raises what it fails with.
    void run();

    const windows::Dispatch& instance() const noexcept { return instance_; }
    ScreenUser& screen() const noexcept { return *screen_; }
    const std::vector<std::string>& violations() const noexcept { return state().checks->violations(); }
    const ObjectRef<Connection>& connection() const noexcept { return state().connection; }
    HostState& state() const noexcept { return *parts_.state; }
    /// The classes that this host gives to the plug-in.
    const ClassObjects& classes() const noexcept { return classes_; }

    void handOverNewContext();
    void handOver(windows::Reference<IDispatch> context);
    /// A context object of this host that is not handed over.
    windows::Reference<IDispatch> newContext() const;

  private:
    /// The options with the recorder of `record`, every line of which also tells the user when to act.
    DevHostOptions recording(DevHostOptions options, Recorder::Sink record);
    void offerClasses();

    HostParts parts_;
    std::unique_ptr<ScreenUser> screen_;
    ClassObjects classes_;
    windows::Dispatch instance_;
};

}  // namespace pxtarvo::devhost
