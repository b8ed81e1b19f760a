#include "plugin/com/type_library.h"

#include "platform/windows/system/wide_text.h"
#include "platform/windows/windows_platform.h"

namespace pxtarvo::com {

HRESULT loadTypeLibrary(windows::Reference<ITypeLib>& library) {
    const windows::WideText path(windows::modulePath());
    return LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put());
}

}  // namespace pxtarvo::com
