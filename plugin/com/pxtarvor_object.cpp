#include "plugin/com/pxtarvor_object.h"

#include "host/windows/automation_field_helper.h"
#include "host/windows/automation_host_database.h"
#include "platform/thread_slots.h"
#include "platform/windows/automation/automation_errors.h"
#include "platform/windows/windows_platform.h"
#include "plugin/com/registration.h"
#include "plugin/com/server_life.h"

namespace pxtarvo::com {

namespace {

using windows::AutomationHostDatabase;
using windows::Reference;

/// What an instance of the calling thread stands on. A platform serves its thread as long as the instances
/// that use it: for ever, so that nobody counts its references.
Entorno windowsBodies() {
    Platform* const platform = &ThreadSlots<windows::WindowsPlatform>::get();
    return {.platform = std::shared_ptr<Platform>(std::shared_ptr<void>(), platform),
            .crearAyuda = &windows::AutomationFieldHelper::create};
}

/// Runs a member; what it raises becomes the caller's error.
template <class Body>
HRESULT guarded(const Body& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (...) {
        return windows::raisedResult(IID__PXTarvor);
    }
}

}  // namespace

PXTarvorObject::PXTarvorObject() : instance_(PXTarvor::crear(windowsBodies())) {
    serverKept = true;
}

HRESULT PXTarvorObject::QueryInterface(REFIID iid, void** object) {
    auto* const dual = static_cast<_PXTarvor*>(this);
    return query(iid, object,
                 {{IID__PXTarvor, dual},
                  {IID_IDispatch, dual},
                  {IID_ISupportErrorInfo, static_cast<ISupportErrorInfo*>(this)}});
}

HRESULT PXTarvorObject::describe() noexcept {
    if (description_) return S_OK;
    try {
        Reference<ITypeLib> library;
        const HRESULT loaded = loadTypeLibrary(library);
        if (FAILED(loaded)) return loaded;
        return library->GetTypeInfoOfGuid(IID__PXTarvor, description_.put());
    } catch (...) {
        return windows::raisedResult(IID__PXTarvor);
    }
}

HRESULT PXTarvorObject::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
}

HRESULT PXTarvorObject::GetTypeInfo(UINT index, LCID, ITypeInfo** description) {
    if (!description) return E_POINTER;
    *description = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    const HRESULT described = describe();
    if (FAILED(described)) return described;
    *description = Reference<ITypeInfo>(description_).detach();
    return S_OK;
}

HRESULT PXTarvorObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* identifiers) {
    const HRESULT described = describe();
    return FAILED(described) ? described : DispGetIDsOfNames(description_.get(), names, count, identifiers);
}

HRESULT PXTarvorObject::Invoke(DISPID identifier, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                               VARIANT* answer, EXCEPINFO* record, UINT* wrongArgument) {
    const HRESULT described = describe();
    if (FAILED(described)) return described;
    // Script languages without an object assignment of their own assign objects as values.
    if (kind == DISPATCH_PROPERTYPUT) kind = DISPATCH_PROPERTYPUTREF;
    return DispInvoke(static_cast<_PXTarvor*>(this), description_.get(), identifier, kind, parameters, answer,
                      record, wrongArgument);
}

HRESULT PXTarvorObject::putref_MyBd(IDispatch* vData) {
    return guarded([&] {
        instance_->MyBd(vData ? makeObject<AutomationHostDatabase>(Reference<IDispatch>::share(vData))
                              : ObjectRef<AutomationHostDatabase>());
    });
}

HRESULT PXTarvorObject::get_MyBd(IDispatch** vData) {
    if (!vData) return E_POINTER;
    *vData = nullptr;
    return guarded([&] {
        const ObjectRef<HostDatabase> held = instance_->MyBd();
        if (!held) return;
        // Every context of this instance came through putref_MyBd.
        const auto& handedOver = dynamic_cast<const AutomationHostDatabase&>(*held);
        *vData = Reference<IDispatch>(handedOver.object()).detach();
    });
}

HRESULT PXTarvorObject::jImportacionTarifas() {
    // The caller may let go of its last count while the window is open.
    const auto alive = Reference<PXTarvorObject>::share(this);
    return guarded([&] { instance_->jImportacionTarifas(); });
}

HRESULT PXTarvorObject::InterfaceSupportsErrorInfo(REFIID iid) {
    return IsEqualIID(iid, IID__PXTarvor) ? S_OK : S_FALSE;
}

}  // namespace pxtarvo::com
