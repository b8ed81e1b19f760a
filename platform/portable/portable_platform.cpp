#include "platform/portable/portable_platform.h"

#include "platform/portable/access/jet_connection.h"
#include "platform/portable/access/stream_recordset.h"
#include "platform/portable/workbook/workbook_reader.h"

namespace pxtarvo::portable {

ObjectRef<Connection> accessFileReader(const DrivePaths& paths) {
    return makeObject<JetConnection>(paths);
}

PortablePlatform::PortablePlatform(PortableOptions options, SimulatedUser& user)
    : options_(std::move(options)),
      paths_(options_.driveC, options_.standIn),
      files_(paths_, options_.output),
      desktop_(user) {
    if (!options_.makeConnection) options_.makeConnection = accessFileReader;
    if (!options_.makeSpreadsheet) {
        options_.makeSpreadsheet = [](const DrivePaths& paths) -> ObjectRef<SpreadsheetApplication> {
            return makeObject<WorkbookReader>(paths);
        };
    }
}

ObjectRef<Recordset> PortablePlatform::createRecordset() {
    return makeObject<StreamRecordset>();
}

}  // namespace pxtarvo::portable
