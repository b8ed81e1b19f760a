#pragma once

// How the plug-in uses a context object of the host: where contexts are replaced, each serves once.

#include <memory>
#include <string_view>

#include "devhost/library/host_state.h"
#include "devhost/record/host_write.h"
#include "devhost/record/protocol_checks.h"

namespace pxtarvo::devhost {

class ContextUse {
  public:
    explicit ContextUse(std::shared_ptr<HostState> state);

    /// A member that every use reads afresh was asked.
    void asked(std::string_view member) const;
    void limpiar(std::int32_t nOpcion);
    void tabla();
    /// A write is about to run; where it is the last one of its context, a new context takes the place.
    void write(const HostWrite& write);
    void writeEnded() noexcept { begun_ = false; }
    /// Leaves the place to a new context: whoever goes on using this one has kept it.
    void giveUp();

  private:
    void begin();

    std::shared_ptr<HostState> state_;
    WriteConduct conduct_;
    bool begun_ = false;
    bool stale_ = false;
};

}  // namespace pxtarvo::devhost
