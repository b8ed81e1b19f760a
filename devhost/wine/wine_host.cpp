#include "devhost/wine/wine_host.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "deletion/frm_borrado_articulos.h"
#include "devhost/library/host_context.h"
#include "devhost/wine/objects/automation_objects.h"
#include "devhost/wine/screen/search_window.h"
#include "import/frm_imp_tarifas.h"
#include "stock/frm_existencias.h"

namespace pxtarvo::devhost {

using windows::Bstr;
using windows::Reference;

namespace {

// Where the registry has no such class yet.
constexpr CLSID connectionClass = {
    0x00000514, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xaa, 0x00, 0x6d, 0x2e, 0xa4}};
constexpr CLSID recordsetClass = {
    0x00000535, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xaa, 0x00, 0x6d, 0x2e, 0xa4}};
constexpr CLSID spreadsheetClass = {
    0x6a1b6d60, 0x54c1, 0x4c9b, {0x8e, 0x0b, 0x3d, 0x6a, 0x51, 0xb4, 0x0c, 0x77}};
constexpr CLSID fieldHelperClass = {
    0x6a1b6d61, 0x54c1, 0x4c9b, {0x8e, 0x0b, 0x3d, 0x6a, 0x51, 0xb4, 0x0c, 0x77}};

constexpr std::string_view fieldHelperName = "HostFields.FieldHelper";

/// The plug-in puts frames beneath everything, the last one it made above those before.
KnownWindow described(const Window& window, std::string caption) {
    KnownWindow known{std::string(window.plan().name), std::move(caption), {}};
    std::vector<std::string> frames;
    for (const Control* control : window.controls()) {
        if (control->kind() == ControlKind::Frame) {
            frames.insert(frames.begin(), control->fullName());
        } else if (control->kind() != ControlKind::Shape) {
            known.controls.push_back(control->fullName());
        }
    }
    std::ranges::move(frames, std::back_inserter(known.controls));
    return known;
}

KnownWindow described(const Window& window) {
    return described(window, window.caption());
}

}  // namespace

PlugIn::PlugIn(const std::string& path) {
    std::string name = "Z:" + path;  // the machine's own root, in every prefix
    for (char& character : name) {
        if (character == '/') character = '\\';
    }
    module_ = LoadLibraryW(Bstr(name).get());
    if (!module_) throw std::runtime_error(path + " cannot be loaded");
    using Entry = HRESULT(STDAPICALLTYPE*)();
    const auto registerServer =
        reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(module_, "DllRegisterServer")));
    if (!registerServer || FAILED(registerServer()))
        throw std::runtime_error(path + " does not register itself");
}

DevHostOptions WineHost::recording(DevHostOptions options, Recorder::Sink record) {
    options.recorder = std::make_shared<Recorder>([this, record = std::move(record)](std::string_view line) {
        record(line);
        if (screen_) screen_->lineRecorded(line);
    });
    return options;
}

WineHost::WineHost(const PlugIn& plugIn, DevHostOptions options, Recorder::Sink record, ScreenSession screen)
    : parts_(recording(std::move(options), std::move(record)), [this] { handOverNewContext(); }) {
    parts_.stage->user->onSearch = [this](const Busqueda& busqueda, Recordset& rows) {
        return screen_->searching([&] { return showSearchWindow(busqueda, rows); });
    };

    screen.recorder = state().recorder;
    screen.newContext = [this] { handOverNewContext(); };
    portable::PortablePlatform& platform = parts_.stage->platform;
    screen.windows = {described(frmImpTarifas(platform)), described(frmExistencias(platform)),
                      described(frmBorradoArticulos(platform), frmBorradoArticulos::tituloConVersion())};
    screen_ = std::make_unique<ScreenUser>(plugIn.module(), std::move(screen));

    offerClasses();
    instance_ = windows::Dispatch::create("PXTarvo.PXTarvor");
    handOverNewContext();
}

WineHost::~WineHost() {
    state().rotate = nullptr;
}

void WineHost::offerClasses() {
    HostStage& stage = *parts_.stage;
    classes_.offer("ADODB.Connection", connectionClass,
                   [&stage] { return connectionObject(stage.platform.createConnection()); });
    classes_.offer("ADODB.Recordset", recordsetClass,
                   [&stage] { return recordsetObject(stage.platform.createRecordset()); });
    classes_.offer("Excel.Application", spreadsheetClass,
                   [&stage] { return spreadsheetObject(stage.platform.createSpreadsheet()); });
    classes_.offer(fieldHelperName, fieldHelperClass,
                   [&stage] { return fieldHelperObject(stage.makeFieldHelper(), stage.platform); });
}

void WineHost::run() {
    instance_.run(u"jImportacionTarifas");
}

Reference<IDispatch> WineHost::newContext() const {
    return contextObject(makeObject<DevHostDatabase>(parts_.state));
}

void WineHost::handOverNewContext() {
    handOver(newContext());
}

void WineHost::handOver(Reference<IDispatch> context) {
    instance_.putReference(u"MyBd", std::move(context));
}

}  // namespace pxtarvo::devhost
