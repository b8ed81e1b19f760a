#include "devhost/host_stage.h"

#include <utility>

#include "devhost/dealer/host_file.h"
#include "devhost/record/recording_connection.h"
#include "import/article_file.h"
#include "platform/portable/clocks.h"

namespace pxtarvo::devhost {

namespace {

portable::PortableOptions portableOptions(const DevHostOptions& options,
                                          const std::shared_ptr<ProtocolChecks>& checks) {
    portable::PortableOptions portable;
    portable.driveC = options.driveC;
    if (!options.articleFile.empty()) {
        portable.standIn = {std::string(sFicheroArticulos), options.articleFile};
    }
    if (options.data != HostData::File) portable.output = portable::SequentialFiles::Output::Discarded;
    portable.clock = options.clock;
    portable.makeConnection = [make = options.makeSource, recorder = options.recorder,
                               checks](const portable::DrivePaths& paths) -> ObjectRef<Connection> {
        return makeObject<RecordingSource>(make ? make(paths) : portable::accessFileReader(paths), recorder,
                                           checks);
    };
    portable.makeSpreadsheet = options.makeSpreadsheet;
    return portable;
}

ObjectRef<portable::SqliteConnection> opened(const DevHostOptions& options) {
    switch (options.data) {
        case HostData::Copy:
            return openHostCopy(options.database, options.clock);
        case HostData::Empty:
            return openEmptyHost(options.clock);
        case HostData::File:
            break;
    }
    return openHostFile(options.database, options.clock);
}

}  // namespace

HostStage::HostStage(const DevHostOptions& options, const std::shared_ptr<ProtocolChecks>& checks)
    : user(std::make_shared<DevUser>(options.recorder)),
      platform(portableOptions(options, checks), *user),
      recorder_(options.recorder) {}

std::unique_ptr<DevFieldHelper> HostStage::makeFieldHelper() const {
    return std::make_unique<DevFieldHelper>(user, recorder_, platform.locale());
}

HostParts::HostParts(DevHostOptions options, std::function<void()> handOverNewContext) {
    if (!options.clock) options.clock = std::make_shared<portable::SystemClock>();
    database = opened(options);
    state->connection = database;
    if (options.cursor == CursorLocation::Server) state->serverCursors = makeObject<ServerCursors>(database);
    state->recorder = options.recorder;
    state->checks = std::make_shared<ProtocolChecks>();
    if (options.rotateContexts) state->rotate = std::move(handOverNewContext);
    stage = std::make_shared<HostStage>(options, state->checks);
    state->locale = &stage->platform.locale();
}

}  // namespace pxtarvo::devhost
