// The entry points of the server: it is registered by whoever uses it, under any class identifiers, the names
// of which decide what is made.

#include <stdlib.h>

#include "devhost/host_stage.h"
#include "devhost/library/host_context.h"
#include "devhost/wine/ado/stand_in_connection.h"
#include "devhost/wine/objects/automation_objects.h"
#include "devhost/wine/objects/class_objects.h"
#include "platform/portable/access/stream_recordset.h"
#include "platform/portable/clocks.h"
#include "platform/portable/workbook/workbook_reader.h"
#include "platform/values/text.h"
#include "platform/windows/automation/automation_errors.h"

namespace {

using namespace pxtarvo;
using windows::Reference;

portable::DrivePaths drives() {
    const char* const prefix = getenv("WINEPREFIX");
    return portable::DrivePaths(prefix ? std::string(prefix) + "/drive_c" : std::string());
}

/// The development host behind the context and the field helper that are created by name, over the dealer's
/// file that the environment variable PXTARVO_DEALER names.
devhost::HostParts& devHost() {
    static devhost::HostParts parts(
        [] {
            devhost::DevHostOptions options;
            char16_t path[512] = {};
            GetEnvironmentVariableW(reinterpret_cast<LPCWSTR>(u"PXTARVO_DEALER"),
                                    reinterpret_cast<LPWSTR>(path), 512);
            options.database = toUtf8(path);
            return options;
        }(),
        [] {});
    return parts;
}

Reference<IDispatch> made(std::string_view name) {
    if (name.starts_with("PXTarvoDevHost.Context")) {
        return devhost::contextObject(makeObject<devhost::DevHostDatabase>(devHost().state));
    }
    if (name.starts_with("HostFields.FieldHelper")) {
        devhost::HostStage& stage = *devHost().stage;
        return devhost::fieldHelperObject(stage.makeFieldHelper(), stage.platform);
    }
    if (name.starts_with("ADODB.Connection")) {
        return devhost::connectionObject(
            makeObject<devhost::StandInConnection>(drives(), std::make_shared<portable::SystemClock>()));
    }
    if (name.starts_with("ADODB.Recordset")) {
        return devhost::recordsetObject(makeObject<portable::StreamRecordset>());
    }
    return devhost::spreadsheetObject(makeObject<portable::WorkbookReader>(drives()));
}

}  // namespace

extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID type, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    LPOLESTR name = nullptr;
    if (FAILED(ProgIDFromCLSID(type, &name))) return CLASS_E_CLASSNOTAVAILABLE;
    try {
        const std::string text = toUtf8(reinterpret_cast<const char16_t*>(name));
        CoTaskMemFree(name);
        return devhost::factoryOf([text] { return made(text); })->QueryInterface(iid, object);
    } catch (...) {
        return windows::raisedResult(IID_IClassFactory);
    }
}

/// The kinds of objects are statics of this module.
extern "C" HRESULT WINAPI DllCanUnloadNow() {
    return S_FALSE;
}
