#pragma once

// The rules of the host's library that the record does not show, checked call by call: the type of every
// value written, which of Tabla and Limpiar opens a write, Campos read for every column, the mode, the
// options, and that no context or connection is kept beyond one use.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/record/host_write.h"

namespace pxtarvo::devhost {

/// Names one context object among all; contexts are numbered from 1 in the order in which they were made.
using ContextNumber = std::uint32_t;

/// How a write was opened and ended, beside what it holds.
struct WriteConduct {
    ContextNumber context = 0;
    bool stale = false;  ///< the context was stale when the write began
    bool limpiarFirst = false;
    bool tablaSet = false;  ///< since the write before
    bool limpiarCalled = false;
};

class ProtocolChecks {
  public:
    /// Distinct texts in the order in which they first occurred, a hundred at most.
    const std::vector<std::string>& violations() const noexcept { return violations_; }

    /// A context that was already used was asked for `member`.
    void staleContext(std::string_view member);
    /// A connection read from a context was used a second time.
    void connectionKept(std::string_view member);
    void options(std::string_view member, std::int32_t options);
    void limpiar(std::int32_t nOpcion);
    void agregar(std::string_view column, std::int32_t nModo, bool camposReadAfresh);
    /// A write is about to run. `rotating` is whether contexts are replaced after use. True when the write is
    /// the last one of its context.
    bool write(const HostWrite& write, const WriteConduct& conduct, bool rotating);

  private:
    void report(std::string text);
    void columnTypes(const HostWrite& write);
    bool origin(const HostWrite& write, const WriteConduct& conduct);

    std::vector<std::string> violations_;
    ContextNumber rowContext_ = 0;  ///< of the row's article write, 0 before it
};

}  // namespace pxtarvo::devhost
