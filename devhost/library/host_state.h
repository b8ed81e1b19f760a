#pragma once

// What the contexts of one host share.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "devhost/library/host_writer.h"
#include "devhost/library/refused_writes.h"
#include "devhost/library/server_cursors.h"
#include "devhost/record/host_write.h"
#include "devhost/record/protocol_checks.h"
#include "devhost/record/recorder.h"
#include "platform/database.h"
#include "platform/values/locale.h"

namespace pxtarvo::devhost {

struct HostState {
    /// The host's database.
    ObjectRef<Connection> connection;
    ObjectRef<ServerCursors> serverCursors;  ///< over `connection`; empty where results are the client's
    const Locale* locale = &spanishLocale();
    std::shared_ptr<Recorder> recorder;      ///< may be empty
    std::shared_ptr<ProtocolChecks> checks;  ///< may be empty
    std::int32_t usuario = 1;
    std::map<std::string, Variant> parametros{{"PAR_ORCONTANOM", Variant(std::int16_t{0})}};
    WriteHook beforeWrite;
    /// Set while contexts are replaced after each use: hands the plug-in a new one.
    std::function<void()> rotate;
    ContextNumber contexts = 0;          ///< made so far
    std::shared_ptr<HostWriter> writer;  ///< on `connection`; made by the first context
    RefusedWrites refused;

    /// What the contexts give out.
    ObjectRef<Connection> offered() const {
        return serverCursors ? ObjectRef<Connection>(serverCursors) : connection;
    }
};

}  // namespace pxtarvo::devhost
