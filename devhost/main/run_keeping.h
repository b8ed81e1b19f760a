#pragma once

// What the options ask to be kept of a run: its changes, the report, the report's tables.

#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "devhost/changes/change_log.h"
#include "devhost/changes/changes_file.h"
#include "devhost/main/window_command.h"
#include "devhost/report/findings_beside.h"
#include "devhost/watch/list_watch.h"

namespace pxtarvo::devhost {

class RunKeeping {
  public:
    enum class Purpose {
        Keep,   ///< what the options ask for
        Check,  ///< the report is made whatever they ask for, in a host without a database of its own
    };
    /// The command must outlive it. Raises std::runtime_error for a file that cannot be written.
    RunKeeping(const CommonOptions& options, const WindowCommand& command, Purpose purpose = Purpose::Keep);

    /// Before the host is made.
    void prepare(DevHostOptions& host);
    /// Before the run.
    void begin(DevHost& host);
    /// The command's window; nullptr when the command has worked in it.
    void window(Window* shown);
    /// After the run. Raises std::runtime_error for what cannot be written, the provider's errors.
    void finish(DevHost& host, const RunEnding& ending);

    /// The report, once it is finished; for commands that show it otherwise too.
    const RunReport& report() const noexcept { return report_; }

  private:
    void takeFields();
    std::future<void> takeChanges();
    void takeEnding(const DevHost& host, const RunEnding& ending);
    void takeList(const RunEnding& ending);
    void findFurtherFaults();
    ListPrice listPrice();

    const CommonOptions& options_;
    const WindowCommand& command_;
    Purpose purpose_;
    bool reports_;
    std::optional<ChangesFile> changesFile_;
    std::optional<ChangeLog> log_;
    DevHostOptions hostOptions_;  ///< as they were before the run
    std::shared_ptr<ListWatch> watch_ = std::make_shared<ListWatch>();
    std::optional<FindingsBeside> findings_;
    Window* window_ = nullptr;
    std::string listPlace_;
    RunReport report_;
};

}  // namespace pxtarvo::devhost
