#include "devhost/wine/screen/import_table.h"

namespace pxtarvo::devhost {

namespace {

/// Where the module keeps the address of what it imports, or nullptr.
void** importSlot(HMODULE module, std::string_view function) {
    auto* const base = reinterpret_cast<unsigned char*>(module);
    const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos.e_lfanew);
    const IMAGE_DATA_DIRECTORY& place = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + place.VirtualAddress);
    for (; library->Name != 0; ++library) {
        const auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* address = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
            const auto* import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            if (function != reinterpret_cast<const char*>(import->Name)) continue;
            return reinterpret_cast<void**>(&address->u1.Function);
        }
    }
    return nullptr;
}

}  // namespace

void* replaceImport(HMODULE module, std::string_view function, void* replacement) {
    void** const slot = importSlot(module, function);
    if (!slot) return nullptr;
    DWORD before = 0;
    VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &before);
    void* const stood = *slot;
    *slot = replacement;
    VirtualProtect(slot, sizeof(*slot), before, &before);
    return stood;
}

bool imports(HMODULE module, std::string_view function) {
    return importSlot(module, function) != nullptr;
}

}  // namespace pxtarvo::devhost
