#include "devhost/dev_host.h"

namespace pxtarvo::devhost {

DevHost::DevHost(DevHostOptions options) : parts_(std::move(options), [this] { handOverNewContext(); }) {
    user().onSearchOpens = [stage = parts_.stage.get()] { stage->platform.desktop().dialogOpens(); };
    Entorno entorno;
    entorno.platform = std::shared_ptr<Platform>(parts_.stage, &platform());
    // The stage stands as long as the platform does.
    entorno.crearAyuda = [stage = parts_.stage.get()]() -> ObjectRef<HostFieldHelper> {
        return std::shared_ptr<HostFieldHelper>(stage->makeFieldHelper());
    };
    instance_ = PXTarvor::crear(std::move(entorno));
    handOverNewContext();
}

DevHost::~DevHost() {
    state().rotate = nullptr;
    instance_->MyBd(nullptr);
}

void DevHost::run() {
    instance_->jImportacionTarifas();
}

void DevHost::handOverNewContext() {
    handOver(makeObject<DevHostDatabase>(parts_.state));
}

void DevHost::handOver(const ObjectRef<HostDatabase>& context) {
    instance_->MyBd(context);
}

}  // namespace pxtarvo::devhost
