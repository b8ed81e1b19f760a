#include "devhost/dev_host.h"

#include "devhost/dealer/host_file.h"
#include "devhost/library/field_helper.h"
#include "devhost/record/recording_connection.h"
#include "import/article_file.h"
#include "platform/portable/access/jet_connection.h"
#include "platform/portable/clocks.h"

namespace pxtarvo::devhost {

/// What the plug-in's instance stands on; the instance outlives the host.
struct DevHost::Stage {
    Stage(portable::PortableOptions options, std::shared_ptr<Recorder> recorder)
        : user(std::make_shared<DevUser>(std::move(recorder))), platform(std::move(options), *user) {
        user->onSearchOpens = [this] { platform.desktop().dialogOpens(); };
    }

    std::shared_ptr<DevUser> user;
    portable::PortablePlatform platform;
};

DevHost::DevHost(DevHostOptions options)
    : checks_(std::make_shared<ProtocolChecks>()), state_(std::make_shared<HostState>()) {
    std::shared_ptr<const Clock> clock = options.clock;
    if (!clock) clock = std::make_shared<portable::SystemClock>();
    if (!options.makeSource) {
        options.makeSource = [](const portable::DrivePaths& paths) -> ObjectRef<Connection> {
            return makeObject<portable::JetConnection>(paths);
        };
    }
    state_->connection = openHostFile(options.database, clock);
    state_->recorder = options.recorder;
    state_->checks = checks_;
    if (options.rotateContexts) state_->rotate = [this] { handOverNewContext(); };

    portable::PortableOptions portable;
    portable.driveC = options.driveC;
    if (!options.articleFile.empty()) {
        portable.standIn = {std::string(sFicheroArticulos), options.articleFile};
    }
    portable.clock = clock;
    portable.makeConnection = [make = options.makeSource, recorder = options.recorder,
                               checks = checks_](const portable::DrivePaths& paths) -> ObjectRef<Connection> {
        return makeObject<RecordingSource>(make(paths), recorder, checks);
    };
    portable.makeSpreadsheet = options.makeSpreadsheet;
    stage_ = std::make_shared<Stage>(std::move(portable), options.recorder);
    state_->locale = &stage_->platform.locale();

    Entorno entorno;
    entorno.platform = std::shared_ptr<Platform>(stage_, &stage_->platform);
    entorno.crearAyuda = [user = stage_->user, recorder = options.recorder,
                          locale = state_->locale]() -> ObjectRef<HostFieldHelper> {
        return makeObject<DevFieldHelper>(user, recorder, *locale);
    };
    instance_ = PXTarvor::crear(std::move(entorno));
    handOverNewContext();
}

DevHost::~DevHost() {
    state_->rotate = nullptr;
    instance_->MyBd(nullptr);
}

void DevHost::run() {
    instance_->jImportacionTarifas();
}

DevUser& DevHost::user() const noexcept {
    return *stage_->user;
}
portable::PortablePlatform& DevHost::platform() const noexcept {
    return stage_->platform;
}

void DevHost::handOverNewContext() {
    handOver(makeObject<DevHostDatabase>(state_));
}

void DevHost::handOver(const ObjectRef<HostDatabase>& context) {
    instance_->MyBd(context);
}

}  // namespace pxtarvo::devhost
