#pragma once

// An import as a command of the window.

#include <string>

#include "devhost/main/options.h"
#include "devhost/main/window_command.h"

namespace pxtarvo::devhost {

class ImportRun {
  public:
    /// The options must outlive it.
    explicit ImportRun(const ImportOptions& options);
    ImportRun(const ImportRun&) = delete;
    ImportRun& operator=(const ImportRun&) = delete;

    WindowCommand& command() noexcept { return command_; }

  private:
    std::optional<Refusal> work(DevHost& host, Window& window);
    void preview();
    std::string reason(std::string told) const;

    const ImportOptions& options_;
    std::string year_;
    std::string list_;
    std::string file_;  ///< the list's, as the window names it
    bool previewed_ = false;
    bool closed_ = false;  ///< the run has closed the window
    WindowCommand command_;
};

}  // namespace pxtarvo::devhost
