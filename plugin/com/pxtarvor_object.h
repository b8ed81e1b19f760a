#pragma once

#include <memory>

#include "platform/windows/automation/counted.h"
#include "platform/windows/automation/reference.h"
#include "plugin/com/interfaces.h"
#include "plugin/pxtarvor.h"

namespace pxtarvo::com {

/// The public class as COM sees it: one object for one instance. No exception leaves it; errors reach the
/// caller with number and description, whichever interface it calls.
class PXTarvorObject final : public windows::Counted<_PXTarvor, ISupportErrorInfo> {
  public:
    /// A new instance, which becomes the calling thread's goInstancia.
    PXTarvorObject();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** description) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* identifiers) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID identifier, REFIID, LCID locale, WORD kind,
                                     DISPPARAMS* parameters, VARIANT* answer, EXCEPINFO* record,
                                     UINT* wrongArgument) override;

    HRESULT STDMETHODCALLTYPE putref_MyBd(IDispatch* vData) override;
    HRESULT STDMETHODCALLTYPE get_MyBd(IDispatch** vData) override;
    HRESULT STDMETHODCALLTYPE jImportacionTarifas() override;

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override;

  private:
    HRESULT describe() noexcept;

    std::shared_ptr<PXTarvor> instance_;
    windows::Reference<ITypeInfo> description_;  ///< loaded at the first call by name
};

}  // namespace pxtarvo::com
