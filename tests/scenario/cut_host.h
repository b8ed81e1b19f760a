#pragma once

// A host whose every object counts the calls that cross the plug-in's boundary and can have any one of them
// fail. The objects are those of the development host, each behind a decorator that asks the count first.

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "devhost/host_stage.h"
#include "plugin/pxtarvor.h"

namespace pxtarvo::test {

/// What happens at the chosen crossing: the call raises (cutNumber, cutText), a write is refused with
/// cutText, or the user closes the window while the run lets the message loop run.
enum class Fault { Raised, Refused, WindowClosed };
inline constexpr ErrorNumber cutNumber = ErrorNumber::ProviderFailure;
inline constexpr const char* cutText = "El servidor no responde.";

/// The crossings since arm().
class Cut {
  public:
    /// Counts from the next crossing on. The one at the 0-based position `at` fails, once.
    void arm(std::size_t at, Fault fault);
    void disarm() noexcept { armed_ = false; }
    /// A call is about to cross. False where `fault` is to happen to it; raises where that is Raised.
    bool crossing(std::string name, Fault fault = Fault::Raised);

    /// Every crossing counted; in order.
    std::vector<std::string> names;
    std::function<void()> onCrossing;

  private:
    bool armed_ = false;
    std::size_t at_ = 0;
    Fault fault_ = Fault::Raised;
};

class CutHost {
  public:
    explicit CutHost(const devhost::DevHostOptions& options);
    CutHost(const CutHost&) = delete;
    CutHost& operator=(const CutHost&) = delete;
    ~CutHost();

    void run() { instance_->jImportacionTarifas(); }
    devhost::DevUser& user() const { return *parts_.stage->user; }
    portable::SimulatedDesktop& desktop() const { return parts_.stage->platform.desktop(); }
    /// What runs on it crosses nothing.
    const ObjectRef<Connection>& connection() const { return parts_.state->connection; }
    const std::vector<std::string>& violations() const { return parts_.state->checks->violations(); }
    /// Whether a file number is in use.
    bool fileOpen() const;

    const std::shared_ptr<Cut> cut = std::make_shared<Cut>();

  private:
    void handOverNewContext();

    devhost::HostParts parts_;
    std::shared_ptr<PXTarvor> instance_;
};

}  // namespace pxtarvo::test
