#include "platform/windows/system/module_theme.h"

namespace pxtarvo::windows {

namespace {

constexpr WORD manifestResource = 2;  // ISOLATIONAWARE_MANIFEST_RESOURCE_ID

HANDLE moduleContext() {
    ACTCTXW request{};
    request.cbSize = sizeof(request);
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.hModule = moduleHandle();
    request.lpResourceName = MAKEINTRESOURCEW(manifestResource);
    return CreateActCtxW(&request);
}

}  // namespace

HINSTANCE moduleHandle() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&moduleHandle), &module);
    return module;
}

ThemeScope::ThemeScope() : context_(moduleContext()) {
    active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
}

ThemeScope::~ThemeScope() {
    if (active_) DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

}  // namespace pxtarvo::windows
