// PXTarvoCheck.dll: the check for a host that has no programmatic identifier for its context, and hands it
// over itself.

#include "check/host_check.h"
#include "platform/windows/automation/automation_errors.h"

namespace windows = pxtarvo::windows;

/// Checks this context, the field helper and the machine. `report` (may be null) gets a text of the caller's
/// to free. Answers with the number of faults, -1 for Nothing or where the check itself could not be made.
extern "C" LONG WINAPI PXTarvoComprobar(IDispatch* context, VARIANT* report) {
    if (report) VariantInit(report);
    if (!context) return -1;
    try {
        const auto findings =
            pxtarvo::check::checkHost(windows::Dispatch(windows::Reference<IDispatch>::share(context)));
        if (report) *report = windows::OwnedVariant(findings.report()).detach();
        return findings.faults();
    } catch (...) {
        windows::raisedResult(IID_NULL);
        return -1;
    }
}
