// Stands in for the system's library that says who uses a file, which Wine has without its contents: the four
// functions that the installer calls, as the system's header declares them, over the modules of the running
// programs.

#include <windows.h>

#include <restartmanager.h>
#include <tlhelp32.h>

#include <cwchar>
#include <string>

namespace {

std::wstring registeredFile;

bool uses(DWORD process, const std::wstring& file) {
    const HANDLE modules = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, process);
    if (modules == INVALID_HANDLE_VALUE) return false;
    MODULEENTRY32W module{};
    module.dwSize = sizeof(module);
    bool found = false;
    for (BOOL more = Module32FirstW(modules, &module); more && !found; more = Module32NextW(modules, &module))
        found = CompareStringOrdinal(module.szExePath, -1, file.c_str(), -1, TRUE) == CSTR_EQUAL;
    CloseHandle(modules);
    return found;
}

}  // namespace

extern "C" {

DWORD WINAPI RmStartSession(DWORD* session, DWORD flags, WCHAR* key) {
    if (!session || flags || !key) return ERROR_INVALID_PARAMETER;
    *session = 1;
    std::wcscpy(key, L"stand-in");
    return ERROR_SUCCESS;
}

DWORD WINAPI RmRegisterResources(DWORD session, UINT files, LPCWSTR* names, UINT, RM_UNIQUE_PROCESS*, UINT,
                                 LPCWSTR*) {
    if (session != 1 || files != 1) return ERROR_INVALID_HANDLE;
    registeredFile = names[0];
    return ERROR_SUCCESS;
}

DWORD WINAPI RmGetList(DWORD session, UINT* needed, UINT* count, RM_PROCESS_INFO* programs, LPDWORD reasons) {
    if (session != 1) return ERROR_INVALID_HANDLE;
    const UINT room = *count;
    *needed = *count = 0;
    *reasons = RmRebootReasonNone;
    const HANDLE processes = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W process{};
    process.dwSize = sizeof(process);
    for (BOOL more = Process32FirstW(processes, &process); more; more = Process32NextW(processes, &process)) {
        if (!uses(process.th32ProcessID, registeredFile) || ++*needed > room) continue;
        RM_PROCESS_INFO& program = programs[(*count)++];
        program = {};
        program.Process.dwProcessId = process.th32ProcessID;
        std::wcsncpy(program.strAppName, process.szExeFile, CCH_RM_MAX_APP_NAME);
    }
    CloseHandle(processes);
    return *needed > room ? ERROR_MORE_DATA : ERROR_SUCCESS;
}

DWORD WINAPI RmEndSession(DWORD session) {
    return session == 1 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

}  // extern "C"
