#pragma once

// What the import window gives to the runs of its lists.

#include <functional>

#include "fields/code_fields.h"
#include "platform/controls.h"
#include "platform/platform.h"

namespace pxtarvo {

/// Refers to the window's own: what a run reads of it is what stands there then, since the user may change it
/// whenever the run yields.
struct VistaImportacion {
    Platform& platform;
    const CamposCodigo& campos;
    const ComboBox& Combo1;
    const TextBox& Fichero;
    Label& Label2;
    ProgressBar& ProgressBar1;
    const ObjectRef<Connection>& cnOrigen;
    std::function<bool()> msConectarOrigen;
    std::function<void()> Unload;
};

}  // namespace pxtarvo
